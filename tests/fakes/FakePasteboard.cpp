#include "fakes/FakePasteboard.h"

namespace orvesa {

void FakePasteboard::clear()
{
    ++m_clears;
    m_items.clear();
}

bool FakePasteboard::write(const std::vector<PasteboardItem> &items)
{
    ++m_writes;
    if (m_acceptsWrites) {
        m_items = items;
    }
    return m_acceptsWrites;
}

std::optional<QString> FakePasteboard::string() const
{
    for (const PasteboardItem &item : m_items) {
        if (const auto found = item.find(QString::fromLatin1(pasteboardPlainText)); found != item.end()) {
            return QString::fromUtf8(found->second);
        }
    }
    return std::nullopt;
}

} // namespace orvesa
