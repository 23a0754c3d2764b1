#include "fakes/FakePasteboard.h"

#include <algorithm>

namespace orvesa {

QCoro::Task<std::optional<std::vector<QStringList>>> FakePasteboard::itemTypes()
{
    ++m_snapshots;
    if (m_isFrozen) {
        co_return std::nullopt;
    }
    std::vector<QStringList> types;
    for (const PasteboardItem &item : m_items) {
        QStringList names;
        std::ranges::transform(item, std::back_inserter(names), &PasteboardEntry::type);
        types.push_back(names);
    }
    for (const auto &[item, type] : m_further) {
        types.at(item).append(type);
    }
    co_return types;
}

QCoro::Task<PasteboardReading> FakePasteboard::data(std::size_t item, QString type)
{
    if (m_readHandler) {
        m_readHandler(type);
    }
    PasteboardReading reading;
    if (m_frozenTypes.contains(type)) {
        reading.outcome = PasteboardReading::Outcome::unreachable;
    } else if (item < m_items.size()) {
        const auto found = std::ranges::find(m_items[item], type, &PasteboardEntry::type);
        if (found != m_items[item].end()) {
            reading.outcome = PasteboardReading::Outcome::data;
            reading.data = found->data;
        }
    }
    co_return reading;
}

QCoro::Task<std::optional<QString>> FakePasteboard::string()
{
    co_await m_gate.passed();
    co_return text();
}

void FakePasteboard::clear()
{
    ++m_clears;
    ++m_changeCount;
    m_items.clear();
    m_further.clear();
}

bool FakePasteboard::write(const std::vector<PasteboardItem> &items)
{
    ++m_writes;
    if (m_acceptsWrites) {
        ++m_changeCount;
        m_items = items;
    }
    return m_acceptsWrites;
}

void FakePasteboard::copyFromOutside(std::vector<PasteboardItem> items)
{
    ++m_changeCount;
    m_items = std::move(items);
    m_further.clear();
}

void FakePasteboard::copyFromOutside(const QString &text)
{
    copyFromOutside(
        std::vector<PasteboardItem>{{{QString::fromLatin1(pasteboardPlainText), {text.toUtf8(), QString()}}}});
}

void FakePasteboard::offerWithoutData(std::size_t item, const QString &type)
{
    m_further.emplace_back(item, type);
}

void FakePasteboard::offerTwice(std::size_t item, const QString &type)
{
    m_further.emplace_back(item, type);
}

void FakePasteboard::replaceData(std::size_t item, const QString &type, const QByteArray &bytes)
{
    std::ranges::find(m_items.at(item), type, &PasteboardEntry::type)->data.bytes = bytes;
}

void FakePasteboard::setReadHandler(std::function<void(const QString &)> handler)
{
    m_readHandler = std::move(handler);
}

std::optional<QString> FakePasteboard::text() const
{
    for (const PasteboardItem &item : m_items) {
        const auto found = std::ranges::find(item, QString::fromLatin1(pasteboardPlainText), &PasteboardEntry::type);
        if (found != item.end()) {
            return QString::fromUtf8(found->data.bytes);
        }
    }
    return std::nullopt;
}

} // namespace orvesa
