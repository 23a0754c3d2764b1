#pragma once

// The general pasteboard. Main thread.

#include <QByteArray>
#include <QString>

#include <map>
#include <vector>

namespace orvesa {

/// One pasteboard item: raw bytes by type. Types are MIME names.
using PasteboardItem = std::map<QString, QByteArray>;

/// The type of plain text, UTF-8.
inline constexpr auto pasteboardPlainText = "text/plain;charset=utf-8";

class PasteboardPort {
public:
    virtual ~PasteboardPort() = default;

    virtual void clear() = 0;
    /// Whether the items were taken over.
    virtual bool write(const std::vector<PasteboardItem> &items) = 0;
};

} // namespace orvesa
