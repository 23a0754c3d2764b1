#pragma once

// The stand-in for AppKit's general pasteboard. Main thread.

#include "macos/recorders/ObjectiveC.h"

namespace orvesa::recorders {

class PasteboardItemObject;

/// What is on it, and what other programs put there; one at a time.
class Pasteboard final {
public:
    /// In their order.
    using Data = std::vector<std::pair<QString, QByteArray>>;

    Pasteboard();
    ~Pasteboard();
    Pasteboard(const Pasteboard &) = delete;
    Pasteboard &operator=(const Pasteboard &) = delete;

    [[nodiscard]] static Pasteboard *current();

    void clear();
    /// Takes a reference of its own. Items of an earlier content are empty from then on.
    void append(PasteboardItemObject *item);
    void copyFromOutside(const std::vector<Data> &items);

    [[nodiscard]] const std::vector<PasteboardItemObject *> &items() const { return m_items; }
    /// Type and data of every item.
    [[nodiscard]] std::vector<Data> contents() const;

    long changeCount = 100;

private:
    std::vector<PasteboardItemObject *> m_items;
};

} // namespace orvesa::recorders
