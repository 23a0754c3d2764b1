#include "rooms/SourceTree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

enum class Scan { code, lineComment, blockComment, text, character };

/// Where a scan of plain code goes at this character.
Scan enter(QChar current, QChar next, QChar previous)
{
    if (current == u'/' && next == u'/') {
        return Scan::lineComment;
    }
    if (current == u'/' && next == u'*') {
        return Scan::blockComment;
    }
    if (current == u'"') {
        return Scan::text;
    }
    // An apostrophe after a digit or letter separates digits (16'384) or ends a prefix of no interest.
    if (current == u'\'' && !previous.isLetterOrNumber()) {
        return Scan::character;
    }
    return Scan::code;
}

} // namespace

SourceTree::SourceTree(const QString &folder)
{
    const QDir root(folder);
    QDirIterator files(folder, {u"*.cpp"_s, u"*.mm"_s, u"*.h"_s, u"*.h.in"_s, u"CMakeLists.txt"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("cannot read " + file.fileName().toStdString());
        }
        m_texts.emplace(root.relativeFilePath(file.fileName()), QString::fromUtf8(file.readAll()));
    }
}

QStringList SourceTree::paths() const
{
    QStringList paths;
    for (const auto &[path, text] : m_texts) {
        paths.append(path);
    }
    return paths;
}

bool SourceTree::contains(const QString &path) const
{
    return m_texts.contains(path);
}

QString SourceTree::text(const QString &path) const
{
    const auto found = m_texts.find(path);
    return found == m_texts.end() ? QString() : found->second;
}

QString SourceTree::code(const QString &path) const
{
    QString code = text(path);
    auto state = Scan::code;
    for (qsizetype index = 0; index < code.size(); ++index) {
        const QChar current = code.at(index);
        const QChar next = index + 1 < code.size() ? code.at(index + 1) : QChar();
        if (state == Scan::code) {
            state = enter(current, next, index > 0 ? code.at(index - 1) : QChar());
            if (state == Scan::lineComment || state == Scan::blockComment) {
                code[index] = u' ';
                code[++index] = u' ';
            }
            continue;
        }
        const bool quoted = state == Scan::text || state == Scan::character;
        if (current == u'\n') {
            // Only a block comment goes on in the next line; a raw string of several lines is not used in this tree.
            state = state == Scan::blockComment ? state : Scan::code;
            continue;
        }
        if (quoted && current == u'\\') {
            code[index] = u' ';
            ++index;
        } else if ((state == Scan::text && current == u'"') || (state == Scan::character && current == u'\'')) {
            state = Scan::code;
            continue;
        } else if (state == Scan::blockComment && current == u'*' && next == u'/') {
            code[index] = u' ';
            ++index;
            state = Scan::code;
        }
        if (index < code.size() && code.at(index) != u'\n') {
            code[index] = u' ';
        }
    }
    return code;
}

QStringList SourceTree::includes(const QString &path) const
{
    static const QRegularExpression pattern(uR"re(^[ \t]*#[ \t]*(?:include|import)[ \t]*["<]([^">]+)[">])re"_s,
                                            QRegularExpression::MultilineOption);
    QStringList includes;
    for (auto matches = pattern.globalMatch(text(path)); matches.hasNext();) {
        includes.append(matches.next().captured(1));
    }
    return includes;
}

bool SourceTree::isHeader(const QString &path)
{
    return path.endsWith(".h"_L1);
}

bool SourceTree::isSource(const QString &path)
{
    return path.endsWith(".cpp"_L1) || path.endsWith(".mm"_L1);
}

} // namespace orvesa
