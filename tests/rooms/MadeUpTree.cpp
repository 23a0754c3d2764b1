#include "rooms/MadeUpTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace orvesa {

MadeUpTree::MadeUpTree(std::initializer_list<std::pair<const char *, const char *>> files)
{
    for (const auto &[path, text] : files) {
        QFile file(m_folder.filePath(QString::fromUtf8(path)));
        const bool written = QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly) &&
                             file.write(text) == static_cast<qint64>(qstrlen(text));
        if (!written) {
            throw std::runtime_error("cannot write " + file.fileName().toStdString());
        }
    }
}

SourceTree MadeUpTree::read() const
{
    return SourceTree(m_folder.path());
}

} // namespace orvesa
