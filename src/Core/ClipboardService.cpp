#include "Core/ClipboardService.h"

#include <algorithm>
#include <utility>

namespace orvesa {

namespace {

constexpr int mostAttempts = 3;

/// A type that comes again replaces its earlier data.
void store(PasteboardItem &item, PasteboardEntry entry)
{
    const auto known = std::ranges::find(item, entry.type, &PasteboardEntry::type);
    if (known == item.end()) {
        item.push_back(std::move(entry));
    } else {
        known->data = std::move(entry.data);
    }
}

} // namespace

ClipboardService::ClipboardService(PasteboardPort &pasteboard) : m_pasteboard(pasteboard) {}

void ClipboardService::copy(const QString &text)
{
    m_pasteboard.clear();
    m_pasteboard.write({{{QString::fromLatin1(pasteboardPlainText), {text.toUtf8(), QString()}}}});
}

QCoro::Task<std::optional<ClipboardService::Snapshot>> ClipboardService::snapshot()
{
    // Contents that change while they are read would become a mixture of two.
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const qint64 before = m_pasteboard.changeCount();
        std::optional<Snapshot> snapshot = co_await read();
        if (m_pasteboard.changeCount() == before) {
            co_return snapshot;
        }
    }
    co_return std::nullopt;
}

QCoro::Task<std::optional<ClipboardService::Snapshot>> ClipboardService::read()
{
    const auto items = co_await m_pasteboard.itemTypes();
    if (!items) {
        co_return std::nullopt;
    }
    Snapshot snapshot;
    for (std::size_t index = 0; index < items->size(); ++index) {
        PasteboardItem item;
        for (const QString &type : (*items)[index]) {
            PasteboardReading reading = co_await m_pasteboard.data(index, type);
            if (reading.outcome == PasteboardReading::Outcome::unreachable) {
                co_return std::nullopt;
            }
            if (reading.outcome == PasteboardReading::Outcome::data) {
                store(item, {type, std::move(reading.data)});
            }
        }
        snapshot.items.push_back(std::move(item));
    }
    co_return snapshot;
}

void ClipboardService::restore(const Snapshot &snapshot)
{
    m_pasteboard.clear();
    if (!snapshot.items.empty()) {
        m_pasteboard.write(snapshot.items);
    }
}

} // namespace orvesa
