#include "rooms/SourceRules.h"

#include <QRegularExpression>

#include <optional>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QString stem(const QString &path)
{
    return path.left(path.lastIndexOf(u'.'));
}

bool isCode(const QString &path)
{
    return SourceTree::isHeader(path) || SourceTree::isSource(path);
}

/// The folder of the nearest CMakeLists.txt at or above the file, with a trailing slash unless it is the root.
std::optional<QString> listFolder(const SourceTree &tree, const QString &path)
{
    for (qsizetype slash = path.lastIndexOf(u'/'); slash >= 0;
         slash = slash == 0 ? -1 : path.lastIndexOf(u'/', slash - 1)) {
        const QString folder = path.left(slash + 1);
        if (tree.contains(folder + u"CMakeLists.txt"_s)) {
            return folder;
        }
    }
    return tree.contains(u"CMakeLists.txt"_s) ? std::optional(QString()) : std::nullopt;
}

/// The lines of a CMakeLists.txt without comments, as its words.
QStringList listWords(const QString &text)
{
    static const QRegularExpression comment(u"#[^\n]*"_s);
    static const QRegularExpression separators(u"[\\s()\";]+"_s);
    return QString(text).remove(comment).split(separators, Qt::SkipEmptyParts);
}

/// Whether a list names the source, in full or as an item of a loop over "${name}.cpp".
bool names(const QStringList &words, const QString &source)
{
    static const QRegularExpression loopSource(u"^\\$\\{\\w+\\}\\.cpp$"_s);
    return words.contains(source) || (words.contains(stem(source)) && words.indexOf(loopSource) >= 0);
}

/// QLabel reads its text as HTML when it looks like HTML: each label says that it does not.
QStringList labelsWithoutFormat(const QString &path, const QString &code, const QString &siblings)
{
    QStringList found;
    static const QRegularExpression creation(
        u"(?:(\\w+)\\s*(?:=|\\(|\\{)\\s*)?(?:new\\s+QLabel\\b|std::make_unique<QLabel>)"_s);
    for (auto matches = creation.globalMatch(code); matches.hasNext();) {
        const QString name = matches.next().captured(1);
        const QRegularExpression format(u"\\b"_s + name + u"(?:->|\\.)setTextFormat\\(Qt::PlainText\\)"_s);
        if (name.isEmpty() || !code.contains(format)) {
            found.append(path + u": makes a QLabel without setTextFormat(Qt::PlainText)"_s);
        }
    }
    static const QRegularExpression heir(u"public\\s+(QLabel|QMessageBox)\\b"_s);
    static const QRegularExpression box(u"\\bQMessageBox\\s+\\w|new\\s+QMessageBox\\b|QMessageBox::(?:information|"
                                        "warning|critical|question|about)\\s*\\("_s);
    if ((code.contains(heir) || code.contains(box)) && !siblings.contains("setTextFormat(Qt::PlainText)"_L1)) {
        found.append(path + u": shows text of a QLabel or QMessageBox without setTextFormat(Qt::PlainText)"_s);
    }
    return found;
}

} // namespace

QStringList wrongBeginnings(const SourceTree &tree)
{
    QStringList found;
    for (const QString &path : tree.paths()) {
        if (SourceTree::isHeader(path) && !tree.text(path).startsWith("#pragma once\n"_L1)) {
            found.append(path + u": does not begin with #pragma once"_s);
        }
        const QString header = stem(path) + u".h"_s;
        if (!SourceTree::isSource(path) || !tree.contains(header) || tree.text(path).isEmpty()) {
            continue;
        }
        // Included first, a header shows that it needs nothing before it.
        const QString first = tree.includes(path).value(0);
        if (first != header && first != header.section(u'/', -1)) {
            found.append(path + u": does not include "_s + header + u" first"_s);
        }
    }
    return found;
}

QStringList platformLeaks(const SourceTree &tree)
{
    static const QRegularExpression conditional(
        u"^[ \\t]*#[ \\t]*(?:if|ifdef|ifndef|elif)\\b[^\\n]*\\b(Q_OS_\\w+|TARGET_OS_\\w+|__linux__|__linux|__unix__|"
        "__APPLE__|_WIN32|_WIN64|__FreeBSD__|__ANDROID__)\\b"_s,
        QRegularExpression::MultilineOption);
    static const QRegularExpression library(u"^(xcb/|X11/|xkbcommon/|libsecret/|gio/|glib|atspi/|QtDBus|QDBus|AppKit/|"
                                            "Carbon/|Cocoa/|Foundation/|Security/|ApplicationServices/|Vision/)"_s);
    QStringList found;
    for (const QString &path : tree.paths()) {
        // The programs of Tools/ exist for one desktop only.
        if (!isCode(path) || path.startsWith("Platform/"_L1) || path.startsWith("Tools/"_L1)) {
            continue;
        }
        for (const QString &include : tree.includes(path)) {
            if (library.match(include).hasMatch()) {
                found.append(path + u": includes "_s + include + u", which belongs to one desktop"_s);
            }
        }
        const auto match = conditional.match(tree.code(path));
        if (match.hasMatch() && !path.startsWith("App/Composition"_L1)) {
            found.append(path + u": compiles by platform, "_s + match.captured(1));
        }
    }
    return found;
}

QStringList richTexts(const SourceTree &tree)
{
    static const QRegularExpression rich(
        u"\\b(Qt::RichText|Qt::AutoText|Qt::MarkdownText|setHtml|insertHtml|appendHtml|setMarkdown)\\b"_s);
    QStringList found;
    for (const QString &path : tree.paths()) {
        if (!isCode(path) || !(path.startsWith("UI/"_L1) || path.startsWith("App/"_L1))) {
            continue;
        }
        const QString code = tree.code(path);
        for (auto matches = rich.globalMatch(code); matches.hasNext();) {
            found.append(path + u": shows text as more than plain text, "_s + matches.next().captured(1));
        }
        found += labelsWithoutFormat(path, code, tree.code(stem(path) + u".h"_s) + tree.code(stem(path) + u".cpp"_s));
    }
    return found;
}

QStringList unlistedSources(const SourceTree &tree)
{
    QStringList found;
    for (const QString &path : tree.paths()) {
        if (path.endsWith("CMakeLists.txt"_L1)) {
            const QStringList words = listWords(tree.text(path));
            if (words.contains("GLOB"_L1) || words.contains("GLOB_RECURSE"_L1)) {
                found.append(path + u": lists sources by globbing"_s);
            }
        }
        if (!SourceTree::isSource(path)) {
            continue;
        }
        const auto folder = listFolder(tree, path);
        if (!folder || !names(listWords(tree.text(*folder + u"CMakeLists.txt"_s)), path.mid(folder->size()))) {
            found.append(path + u": is not listed in a CMakeLists.txt"_s);
        }
    }
    return found;
}

} // namespace orvesa
