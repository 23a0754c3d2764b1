// A preferences file of any bytes. It is loaded, changed and loaded again: nothing may crash, what was understood
// stays, and what is set is there again.

#include "Core/SettingsValues.h"
#include "Platform/linux/DefaultsDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace orvesa;

namespace {

class DocumentDefaults final : public UserDefaultsPort {
public:
    explicit DocumentDefaults(DefaultsDictionary values) : m_values(std::move(values)) {}

    [[nodiscard]] std::optional<DefaultsValue> value(const QString &key) const override
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(found->second);
    }
    void set(const QString &, const DefaultsValue &) override { std::abort(); }
    void remove(const QString &) override { std::abort(); }
    [[nodiscard]] std::optional<DefaultsDictionary> persistentDomain(const QString &) const override
    {
        return std::nullopt;
    }
    void setExternalChangeHandler(std::function<void()>) override {}

private:
    DefaultsDictionary m_values;
};

class NoLanguages final : public PreferredLanguagesPort {
public:
    [[nodiscard]] QStringList preferredLanguages() const override { return {}; }
};

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

/// By their written form, since one number that is none does not equal another.
QByteArray written(const DefaultsDictionary &values)
{
    DefaultsDocument document;
    for (const auto &[key, value] : values) {
        document.change(key, value);
    }
    return document.bytes();
}

void checkSettings(const DefaultsDictionary &values)
{
    const SettingsValues settings = readSettings(DocumentDefaults(values), NoLanguages());
    const auto hotKeys = decodedHotKeys(encodedHotKeys(settings.hotKeyOverrides), UnknownActions::refused);
    require(hotKeys == settings.hotKeyOverrides);
    require(decodedPrompts(encodedPrompts(settings.customPrompts)) == settings.customPrompts);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    auto document = DefaultsDocument::parse(bytes);
    if (!document) {
        return 0;
    }
    const DefaultsDictionary values = document->values();
    checkSettings(values);
    const auto again = DefaultsDocument::parse(document->bytes());
    require(again && written(again->values()) == written(values));

    // The bytes themselves as a value, under a key that the file may hold already.
    DefaultsDictionary changed = values;
    changed.insert_or_assign(u"settings.hotKeys"_s, bytes);
    document->change(u"settings.hotKeys"_s, bytes);
    changed.insert_or_assign(u"settings.theme"_s, QString::fromUtf8(bytes));
    document->change(u"settings.theme"_s, QString::fromUtf8(bytes));
    const auto reloaded = DefaultsDocument::parse(document->bytes());
    require(reloaded && written(reloaded->values()) == written(changed));
    checkSettings(changed);
    return 0;
}
