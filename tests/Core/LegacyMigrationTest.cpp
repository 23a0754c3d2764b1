#include "Core/LegacyMigration.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Write = FakeUserDefaults::Write;

const QString marker = u"migration.copiedFromLegacyDomain"_s;
const QString first = u"com.example.first"_s;
const QString second = u"com.example.second"_s;
const Write markerWrite{marker, DefaultsValue(true)};

class LegacyMigrationTest : public ::testing::Test {
protected:
    void migrate(const std::vector<DefaultsDictionary> &values)
    {
        LegacyMigration::migrateUserDefaultsIfNeeded(m_defaults, values);
    }
    void migrateDomains() { LegacyMigration::migrateUserDefaultsIfNeeded(m_defaults, QStringList{first, second}); }

    FakeUserDefaults m_defaults;
};

TEST_F(LegacyMigrationTest, setsTheMarkerAndNothingElseOnAFreshInstallation)
{
    migrateDomains();
    EXPECT_THAT(m_defaults.writes(), ElementsAre(markerWrite));
    EXPECT_THAT(m_defaults.readDomains(), ElementsAre(first, second));
}

TEST_F(LegacyMigrationTest, setsTheMarkerBeforeItCopies)
{
    migrate({{{u"settings.theme"_s, u"ocean"_s}}});
    EXPECT_THAT(m_defaults.writes(), ElementsAre(markerWrite, Write{u"settings.theme"_s, u"ocean"_s}));
}

TEST_F(LegacyMigrationTest, takesTheFirstDomainsValueWhereBothHaveOne)
{
    m_defaults.preparePersistentDomain(
        second, {{u"settings.targetLanguage"_s, u"English"_s}, {u"settings.theme"_s, u"forest"_s}});
    m_defaults.preparePersistentDomain(first, {{u"settings.targetLanguage"_s, u"Japanese"_s}});
    migrateDomains();
    EXPECT_EQ(m_defaults.value(u"settings.targetLanguage"_s), DefaultsValue(u"Japanese"_s));
    EXPECT_EQ(m_defaults.value(u"settings.theme"_s), DefaultsValue(u"forest"_s));
    EXPECT_EQ(m_defaults.writes().size(), 3U) << "no value is written twice";
}

TEST_F(LegacyMigrationTest, keepsWhatTheProgramsOwnDomainHas)
{
    m_defaults.prepare(u"settings.polishMode"_s, u"concise"_s);
    m_defaults.prepare(u"settings.theme"_s, u"not understood"_s);
    m_defaults.prepare(u"settings.thinkingEnabled"_s, false);
    migrate({{{u"settings.polishMode"_s, u"naturalJapanese"_s},
              {u"settings.theme"_s, u"ocean"_s},
              {u"settings.thinkingEnabled"_s, true}},
             {{u"settings.polishMode"_s, u"traditionalChinese"_s}}});
    EXPECT_THAT(m_defaults.writes(), ElementsAre(markerWrite));
}

TEST_F(LegacyMigrationTest, copiesOnlyKeysWithThePrefix)
{
    migrate({{{u"Settings.theme"_s, u"a"_s},
              {u"settingsTheme"_s, u"b"_s},
              {u"settings"_s, u"c"_s},
              {u" settings.theme"_s, u"d"_s},
              {u"other.settings.theme"_s, u"e"_s},
              {u"migration.copiedFromLegacyDomain"_s, false},
              {u"settings."_s, u"f"_s},
              {u"settings.of.the.future"_s, u"g"_s}}});
    EXPECT_THAT(m_defaults.values(),
                UnorderedElementsAre(std::pair(marker, DefaultsValue(true)),
                                     std::pair(u"settings."_s, DefaultsValue(u"f"_s)),
                                     std::pair(u"settings.of.the.future"_s, DefaultsValue(u"g"_s))));
}

TEST_F(LegacyMigrationTest, copiesValuesAsTheyAreStored)
{
    const DefaultsDictionary values{{u"settings.a"_s, true},
                                    {u"settings.b"_s, qint64{-7}},
                                    {u"settings.c"_s, 2.5},
                                    {u"settings.customPrompts"_s, QByteArray("not \xff JSON")},
                                    {u"settings.theme"_s, u"no theme"_s}};
    migrate({values});
    for (const auto &[key, value] : values) {
        EXPECT_EQ(m_defaults.value(key), value) << key.toStdString();
    }
}

TEST_F(LegacyMigrationTest, readsNoDomainOnceItHasRun)
{
    migrateDomains();
    m_defaults.preparePersistentDomain(first, {{u"settings.theme"_s, u"ocean"_s}});
    m_defaults.forgetCalls();
    migrateDomains();
    EXPECT_THAT(m_defaults.readDomains(), IsEmpty());
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
    migrate({{{u"settings.theme"_s, u"ocean"_s}}});
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
}

TEST_F(LegacyMigrationTest, runsAgainWhenTheMarkerIsNotTrue)
{
    m_defaults.prepare(marker, false);
    migrate({{{u"settings.theme"_s, u"ocean"_s}}});
    EXPECT_THAT(m_defaults.writes(), ElementsAre(markerWrite, Write{u"settings.theme"_s, u"ocean"_s}));
}

TEST_F(LegacyMigrationTest, leavesTheEarlierDomainsAlone)
{
    const DefaultsDictionary values{{u"settings.theme"_s, u"ocean"_s}};
    m_defaults.preparePersistentDomain(first, values);
    migrateDomains();
    EXPECT_EQ(m_defaults.persistentDomain(first), values);
}

} // namespace
} // namespace orvesa
