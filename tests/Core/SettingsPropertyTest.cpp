// Whatever is set, in whatever order, is there again after a reload: over the real file.

#include "Core/SettingsStore.h"
#include "Platform/linux/FileUserDefaults.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <functional>
#include <random>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

/// Makes values and picks changes. The same seed gives the same ones.
class Chance final {
public:
    explicit Chance(unsigned seed) : m_random(seed) {}

    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }
    bool coin() { return below(2) == 0; }

    template <typename Enumeration>
    Enumeration anyCase()
    {
        const auto cases = allCases<Enumeration>();
        return cases[static_cast<std::size_t>(below(static_cast<int>(cases.size())))];
    }

    /// Of every sort of character that texts, JSON and the file's own form might trip over.
    QString text()
    {
        static const QStringList parts{u"a"_s,      u"Z9"_s,     u" "_s,       u"\""_s,   u"'"_s,      u"\\"_s,
                                       u"\n"_s,     u"\r"_s,     u"\t"_s,      u"#"_s,    u" = "_s,    u"{text}"_s,
                                       u"日本語"_s, u"é"_s,      u"e\u0301"_s, u"🎉"_s,    u"\u0001"_s, u"\u007f"_s,
                                       u"\u2028"_s, u"\ufeff"_s, u"\\u0041"_s, u"data"_s, u"true"_s,   u"\u202e"_s,
                                       u"%1"_s,     u"%@"_s,     u"</b>"_s,    u"\\"_s,   u"\u0000"_s, u"\u00a0"_s};
        QString text;
        for (int count = below(12); count > 0; --count) {
            const QString &part = parts.at(below(static_cast<int>(parts.size())));
            text += part.isEmpty() ? QString(QChar(0)) : part;
        }
        return text;
    }
    KeyCombo combo()
    {
        return {static_cast<quint32>(below(128)),
                static_cast<quint32>(std::uniform_int_distribution<quint32>()(m_random)), text()};
    }
    CustomPrompt prompt()
    {
        const auto part = [this] { return std::uniform_int_distribution<quint32>()(m_random); };
        const QUuid id(part(), static_cast<ushort>(part()), static_cast<ushort>(part()), static_cast<uchar>(part()), 1,
                       2, 3, 4, 5, 6, static_cast<uchar>(part()));
        return {id, text(), text(), coin() ? std::optional(combo()) : std::nullopt};
    }

private:
    std::mt19937 m_random;
};

/// Everything that a store holds.
struct Everything {
    explicit Everything(const SettingsStore &store)
        : defaultProvider(store.defaultProvider()), targetLanguage(store.targetLanguage()),
          polishMode(store.polishMode()), thinkingEnabled(store.thinkingEnabled()),
          hotKeyOverrides(store.hotKeyOverrides()), appLanguage(store.appLanguage()), theme(store.theme()),
          customPrompts(store.customPrompts())
    {
        for (const AIProviderType provider : allCases<AIProviderType>()) {
            models.append(store.model(provider));
        }
    }
    bool operator==(const Everything &) const = default;

    AIProviderType defaultProvider;
    TargetLanguage targetLanguage;
    PolishMode polishMode;
    bool thinkingEnabled;
    HotKeyOverrides hotKeyOverrides;
    AppLanguage appLanguage;
    AppTheme theme;
    std::vector<CustomPrompt> customPrompts;
    QStringList models;
};

/// For the message of a failure.
void PrintTo(const Everything &everything, std::ostream *stream)
{
    *stream << encodedHotKeys(everything.hotKeyOverrides).toStdString() << ' '
            << encodedPrompts(everything.customPrompts).toStdString() << ' '
            << everything.models.join(u'|').toStdString();
}

void changeSomething(SettingsStore &store, Chance &chance)
{
    const std::function<void()> changes[] = {
        [&] { store.setDefaultProvider(chance.anyCase<AIProviderType>()); },
        [&] { store.setTargetLanguage(chance.anyCase<TargetLanguage>()); },
        [&] { store.setPolishMode(chance.anyCase<PolishMode>()); },
        [&] { store.setThinkingEnabled(chance.coin()); },
        [&] { store.setAppLanguage(chance.anyCase<AppLanguage>()); },
        [&] { store.setTheme(chance.anyCase<AppTheme>()); },
        [&] { store.setModel(chance.text(), chance.anyCase<AIProviderType>()); },
        [&] { store.setCombo(chance.combo(), chance.anyCase<HotKeyAction>()); },
        [&] {
            const auto action = chance.anyCase<HotKeyAction>();
            store.setCombo(defaultCombo(action), action);
        },
        [&] {
            std::vector<CustomPrompt> prompts = store.customPrompts();
            if (!prompts.empty() && chance.coin()) {
                prompts.erase(prompts.begin() + chance.below(static_cast<int>(prompts.size())));
            } else {
                prompts.insert(prompts.begin() + chance.below(static_cast<int>(prompts.size()) + 1), chance.prompt());
            }
            store.setCustomPrompts(std::move(prompts));
        },
        [&] {
            HotKeyOverrides overrides;
            for (int count = chance.below(4); count > 0; --count) {
                overrides.insert_or_assign(chance.anyCase<HotKeyAction>(), chance.combo());
            }
            store.setHotKeyOverrides(std::move(overrides));
        },
    };
    changes[chance.below(static_cast<int>(std::size(changes)))]();
}

TEST(SettingsProperty, AnySequenceOfChangesIsThereAgainAfterAReload)
{
    constexpr unsigned sequences = 60;
    constexpr int mostChanges = 25;
    const InterfaceLanguage interfaceLanguage(AppLanguage::english);
    const FakePreferredLanguages languages({u"ja"_s});
    for (unsigned seed = 1; seed <= sequences; ++seed) {
        const QTemporaryDir folder;
        Chance chance(seed);
        FileUserDefaults defaults(u"app"_s, folder.path());
        SettingsStore store(defaults, languages);
        for (int change = chance.below(mostChanges); change >= 0; --change) {
            changeSomething(store, chance);
        }
        ASSERT_FALSE(defaults.hasUnwrittenChanges());
        FileUserDefaults reloaded(u"app"_s, folder.path());
        const SettingsStore other(reloaded, languages);
        ASSERT_EQ(Everything(other), Everything(store)) << "seed " << seed;
    }
}

TEST(SettingsProperty, TwoStoresThatChangeInTurnsAgreeInTheEnd)
{
    const InterfaceLanguage interfaceLanguage(AppLanguage::english);
    const FakePreferredLanguages languages({u"ja"_s});
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const QTemporaryDir folder;
        Chance chance(seed);
        FileUserDefaults firstFile(u"app"_s, folder.path());
        FileUserDefaults secondFile(u"app"_s, folder.path());
        SettingsStore first(firstFile, languages);
        SettingsStore second(secondFile, languages);
        for (int change = 0; change < 30; ++change) {
            changeSomething(chance.coin() ? first : second, chance);
            QCoreApplication::processEvents(); // each hears of the other's change
        }
        QCoreApplication::processEvents();
        FileUserDefaults thirdFile(u"app"_s, folder.path());
        const Everything third = Everything(SettingsStore(thirdFile, languages));
        ASSERT_EQ(Everything(first), third) << "seed " << seed;
        ASSERT_EQ(Everything(second), third) << "seed " << seed;
    }
}

} // namespace
} // namespace orvesa
