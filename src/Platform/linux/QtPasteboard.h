#pragma once

// The CLIPBOARD selection through Qt's clipboard. The PRIMARY selection is never touched. Main thread.
//
// Taking the selection over is a request to the display server alone: another program that has stopped cannot delay it.

#include "Platform/PasteboardPort.h"

namespace orvesa {

class QtPasteboard final : public PasteboardPort {
public:
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;
};

} // namespace orvesa
