#pragma once

// Writes texts to the pasteboard that the user pastes from, and takes its whole contents aside for a while.
//
// Main thread; the port must outlive the service and its jobs.

#include "Platform/PasteboardPort.h"

#include <QCoroTask>

#include <QString>

#include <optional>
#include <vector>

namespace orvesa {

class ClipboardService final {
public:
    /// Everything that is on a pasteboard, byte for byte: one entry per item, in order. An item that yields no data is
    /// an empty entry.
    struct Snapshot {
        std::vector<PasteboardItem> items;

        bool operator==(const Snapshot &) const = default;
    };

    explicit ClipboardService(PasteboardPort &pasteboard);

    /// Replaces what is on the pasteboard by the text, as plain text.
    void copy(const QString &text);

    /// What is on the pasteboard. Nothing when it cannot be had whole: its owner does not hand it over in time, or it
    /// keeps changing. Whoever replaced the contents then would lose them for good.
    [[nodiscard]] QCoro::Task<std::optional<Snapshot>> snapshot();
    /// Replaces what is on the pasteboard by the snapshot; an empty one leaves it empty.
    void restore(const Snapshot &snapshot);

    [[nodiscard]] PasteboardPort &pasteboard() { return m_pasteboard; }

private:
    /// One attempt; the contents may change under it.
    [[nodiscard]] QCoro::Task<std::optional<Snapshot>> read();

    PasteboardPort &m_pasteboard;
};

} // namespace orvesa
