#pragma once

// The source files of a tree as texts, for the checks that read them.
//
// Read once at creation; immutable afterwards. Any thread.

#include <QString>
#include <QStringList>

#include <map>

namespace orvesa {

class SourceTree final {
public:
    /// Reads every C++ source and header, templates of headers (.h.in) too, and every CMakeLists.txt under the folder. Other files are left out.
    explicit SourceTree(const QString &folder);

    /// Paths relative to the folder, with forward slashes, sorted.
    [[nodiscard]] QStringList paths() const;
    [[nodiscard]] bool contains(const QString &path) const;
    /// The file's text as it is; empty when there is no such file.
    [[nodiscard]] QString text(const QString &path) const;
    /// The file's text with comments and the contents of string literals blanked, line breaks kept.
    [[nodiscard]] QString code(const QString &path) const;
    /// What the file includes, "Room/File.h" or <Room/File.h> alike, in order.
    [[nodiscard]] QStringList includes(const QString &path) const;

    [[nodiscard]] static bool isHeader(const QString &path);
    [[nodiscard]] static bool isSource(const QString &path);

private:
    std::map<QString, QString> m_texts;
};

} // namespace orvesa
