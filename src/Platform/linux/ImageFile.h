#pragma once

// Reads an image file without being held up or filled up by what may be in its place. Pure but for the file; any
// thread.

#include <QByteArray>
#include <QSize>
#include <QString>

namespace orvesa {

struct ImageFile {
    QByteArray bytes;
    QSize size;      ///< in pixels, as the file's header says
    QString failure; ///< one English line; empty when the file was read
};

/// Regular files of at most 64 MB and 100 million pixels, in a format that Qt reads.
[[nodiscard]] ImageFile readImageFile(const QString &path);

} // namespace orvesa
