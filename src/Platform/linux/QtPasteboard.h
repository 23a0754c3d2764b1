#pragma once

// The CLIPBOARD selection through Qt's clipboard. The PRIMARY selection is never touched. Main thread.
//
// Taking the selection over is a request to the display server alone: another program that has stopped cannot delay it.

#include "Platform/PasteboardPort.h"

namespace orvesa {

class QtPasteboard final : public PasteboardPort {
public:
    [[nodiscard]] qint64 changeCount() override { return 0; }
    [[nodiscard]] QCoro::Task<std::optional<std::vector<QStringList>>> itemTypes() override;
    [[nodiscard]] QCoro::Task<PasteboardReading> data(std::size_t item, QString type) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override;
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;
};

} // namespace orvesa
