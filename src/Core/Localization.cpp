#include "Core/Localization.h"

#include "Core/LocalizationTables.h"

#include <optional>

namespace orvesa::Localization {

namespace {

// The rows are in the keys' order, so a key is its own index as long as the keys are numbered from 0 without gaps.
static_assert([] {
    const auto keys = allCases<L10nKey>();
    for (std::size_t index = 0; index < keys.size(); ++index) {
        if (static_cast<std::size_t>(keys[index]) != index) {
            return false;
        }
    }
    return true;
}());

constinit AppLanguage currentLanguage = AppLanguage::english;

std::span<const TextRow> table(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return traditionalChineseRows;
    case AppLanguage::japanese:
        return japaneseRows;
    case AppLanguage::english:
        break;
    }
    return englishRows;
}

std::optional<QString> find(L10nKey key, std::span<const TextRow> rows)
{
    const auto index = static_cast<std::size_t>(key);
    if (index >= rows.size() || rows[index].key != key) {
        return std::nullopt;
    }
    // The tables live as long as the program, so the text need not be copied.
    const std::u16string_view text = rows[index].text;
    return QString::fromRawData(reinterpret_cast<const QChar *>(text.data()), static_cast<qsizetype>(text.size()));
}

} // namespace

AppLanguage current()
{
    return currentLanguage;
}

void setCurrent(AppLanguage language)
{
    currentLanguage = language;
}

QString lookUp(L10nKey key, std::span<const TextRow> rows, std::span<const TextRow> english)
{
    if (const auto text = find(key, rows)) {
        return *text;
    }
    if (const auto text = find(key, english)) {
        return *text;
    }
    return rawValue(key);
}

QString string(L10nKey key)
{
    return lookUp(key, table(currentLanguage), englishRows);
}

QString format(L10nKey key, const QString &argument)
{
    // Not QString::arg() nor a printf: the argument comes from outside and must never act as a format.
    static constexpr QLatin1StringView placeholder("%@");
    QString text = string(key);
    const qsizetype position = text.indexOf(placeholder);
    if (position >= 0) {
        text.replace(position, placeholder.size(), argument);
    }
    return text;
}

QString string(L10nKey key, AppLanguage language)
{
    return find(key, table(language)).value_or(QString());
}

} // namespace orvesa::Localization
