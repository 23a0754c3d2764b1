#include "Platform/linux/DefaultsDocument.h"

#include "Platform/linux/DefaultsText.h"

#include <QStringDecoder>

#include <algorithm>
#include <ranges>

namespace orvesa {

std::optional<DefaultsDocument> DefaultsDocument::parse(const QByteArray &bytes)
{
    // Stateless, or a character that is cut off at the end would count as one that goes on in a next piece.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError() || text.contains(QChar::Null)) {
        return std::nullopt;
    }
    DefaultsDocument document;
    qsizetype start = 0;
    while (start < bytes.size()) {
        const qsizetype found = bytes.indexOf('\n', start);
        const qsizetype end = found < 0 ? bytes.size() : found;
        document.m_lines.push_back(parseLine(bytes.mid(start, end - start)));
        start = end + 1;
    }
    return document;
}

DefaultsDocument::Line DefaultsDocument::parseLine(const QByteArray &bytes)
{
    Line line{.bytes = bytes, .key = {}, .value = std::nullopt, .isBroken = false};
    const QString text = QString::fromUtf8(bytes);
    QStringView rest = QStringView(text).trimmed();
    if (rest.isEmpty() || rest.startsWith(u'#')) {
        return line;
    }
    line.isBroken = true;
    auto key = DefaultsText::takeKey(rest);
    if (!key || key->isEmpty()) {
        return line;
    }
    rest = rest.trimmed();
    if (!rest.startsWith(u'=')) {
        return line;
    }
    line.key = *std::move(key);
    line.value = DefaultsText::parseValue(rest.sliced(1).trimmed());
    line.isBroken = !line.value.has_value();
    return line;
}

QByteArray DefaultsDocument::bytes() const
{
    QByteArray result;
    for (const Line &line : m_lines) {
        result += line.bytes;
        result += '\n';
    }
    return result;
}

DefaultsDictionary DefaultsDocument::values() const
{
    DefaultsDictionary dictionary;
    for (const Line &line : m_lines) {
        if (line.value) {
            dictionary.insert_or_assign(line.key, *line.value);
        }
    }
    return dictionary;
}

void DefaultsDocument::change(const QString &key, const std::optional<DefaultsValue> &value)
{
    const auto isOfKey = [&key](const Line &line) { return line.key == key; };
    if (!value) {
        std::erase_if(m_lines, isOfKey);
        return;
    }
    Line line{.bytes = DefaultsText::keyText(key) + " = " + DefaultsText::valueText(*value),
              .key = key,
              .value = value,
              .isBroken = false};
    const auto last = std::ranges::find_if(m_lines | std::views::reverse, isOfKey);
    if (last == m_lines.rend()) {
        m_lines.push_back(std::move(line));
        return;
    }
    *last = std::move(line);
    const auto kept = static_cast<std::size_t>(std::distance(m_lines.begin(), last.base()) - 1);
    std::size_t index = 0;
    std::erase_if(m_lines, [&](const Line &other) { return index++ != kept && other.key == key; });
}

bool DefaultsDocument::hasBrokenValue(const QString &key) const
{
    return std::ranges::any_of(m_lines, [&key](const Line &line) { return line.isBroken && line.key == key; });
}

int DefaultsDocument::firstBrokenLine() const
{
    const auto broken = std::ranges::find_if(m_lines, &Line::isBroken);
    return broken == m_lines.end() ? 0 : static_cast<int>(std::distance(m_lines.begin(), broken)) + 1;
}

} // namespace orvesa
