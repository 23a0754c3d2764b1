#pragma once

// The general pasteboard.
//
// Main thread. The pasteboard is the system's; items that are written are handed over. An owner that promised data and
// does not hand it over is waited for by the system, which gives up by itself.

#include "Platform/PasteboardPort.h"

namespace orvesa {

class AppKitPasteboard final : public PasteboardPort {
public:
    [[nodiscard]] qint64 changeCount() override;
    [[nodiscard]] QCoro::Task<std::optional<std::vector<QStringList>>> itemTypes() override;
    [[nodiscard]] QCoro::Task<PasteboardReading> data(std::size_t item, QString type) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override;
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;
};

} // namespace orvesa
