#pragma once

// A pasteboard in memory that remembers what was done to it. Main thread.

#include "Platform/PasteboardPort.h"

#include <optional>

namespace orvesa {

class FakePasteboard final : public PasteboardPort {
public:
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;

    /// Every later write() is refused and changes nothing.
    void refuseWrites() { m_acceptsWrites = false; }
    [[nodiscard]] const std::vector<PasteboardItem> &items() const { return m_items; }
    /// The plain text of the first item that has one.
    [[nodiscard]] std::optional<QString> string() const;
    [[nodiscard]] int clears() const { return m_clears; }
    [[nodiscard]] int writes() const { return m_writes; }

private:
    std::vector<PasteboardItem> m_items;
    int m_clears = 0;
    int m_writes = 0;
    bool m_acceptsWrites = true;
};

} // namespace orvesa
