#pragma once

// The text form of a preferences file. Value type, any thread, no I/O.
//
// One value per line, UTF-8:
//
//     # a comment
//     settings.targetLanguage = "Japanese"          text
//     settings.thinkingEnabled = true               Boolean
//     window.width = 420                            integer
//     panel.scale = 1.5                             real
//     settings.hotKeys = data '{"polish":{}}'       data that is readable text
//     blob = data:base64 AAEC                       other data
//
// Texts stand between double or single quotes with the escapes \\ \" \' \n \r \t \uXXXX. A key that is more than
// letters, digits, '.', '-' and '_' is quoted as well. Comments, blank lines and lines that are not understood keep
// their place and their bytes when values change; of a key that occurs twice the last one counts.

#include "Platform/UserDefaultsPort.h"

#include <optional>
#include <vector>

namespace orvesa {

class DefaultsDocument final {
public:
    DefaultsDocument() = default;
    /// Nothing when the bytes are no text at all: invalid UTF-8, or a NUL inside.
    [[nodiscard]] static std::optional<DefaultsDocument> parse(const QByteArray &bytes);

    [[nodiscard]] QByteArray bytes() const;
    [[nodiscard]] DefaultsDictionary values() const;
    /// Sets or, with no value, removes.
    void change(const QString &key, const std::optional<DefaultsValue> &value);
    /// Whether change() of this key would drop a value that was not understood.
    [[nodiscard]] bool hasBrokenValue(const QString &key) const;
    /// The number (from 1) of the first line that was not understood; 0 when there is none.
    [[nodiscard]] int firstBrokenLine() const;

private:
    struct Line {
        QByteArray bytes; ///< as it stands in the file, without the line break
        QString key;      ///< empty for comments and lines without a recognisable key
        std::optional<DefaultsValue> value;
        bool isBroken = false;
    };

    [[nodiscard]] static Line parseLine(const QByteArray &bytes);

    std::vector<Line> m_lines;
};

} // namespace orvesa
