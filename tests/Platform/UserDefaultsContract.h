#pragma once

// What every preferences database promises, to be asked of the fake that other tests rely on and of the real ones.
//
// A database offers the port, and plays the others: port(), changeFromOutside(key, value or none), and
// makeDomain(name, key, Boolean).

#include "Platform/UserDefaultsPort.h"
#include "fakes/Happening.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <limits>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

template <typename Database>
class UserDefaultsContract : public ::testing::Test {
protected:
    [[nodiscard]] UserDefaultsPort &port() { return m_database.port(); }
    [[nodiscard]] std::optional<DefaultsValue> value(const QString &key) { return port().value(key); }

    Database m_database;
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, HasNothingAtFirst)
{
    EXPECT_EQ(this->value(u"a"_s), std::nullopt);
    this->port().remove(u"a"_s);
    EXPECT_EQ(this->value(u"a"_s), std::nullopt);
    EXPECT_FALSE(this->port().hasUnwrittenChanges());
}

TYPED_TEST_P(UserDefaultsContract, GivesBackEveryTypeAsItWasSet)
{
    const DefaultsValue values[] = {true,
                                    false,
                                    qint64{0},
                                    qint64{1},
                                    std::numeric_limits<qint64>::min(),
                                    std::numeric_limits<qint64>::max(),
                                    0.0,
                                    1.0,
                                    -2.5e-300,
                                    QString(),
                                    u"true"_s,
                                    u"1"_s,
                                    u"  a\n\t\"'\\ 日本 🎉"_s,
                                    QByteArray(),
                                    QByteArray("true"),
                                    QByteArray("\0\xff\xfe'\n", 5)};
    for (const DefaultsValue &value : values) {
        this->port().set(u"key"_s, value);
        EXPECT_EQ(this->value(u"key"_s), value) << "the type counts too, and the last value";
        EXPECT_EQ(this->value(u"key"_s)->index(), value.index());
    }
}

TYPED_TEST_P(UserDefaultsContract, TellsApartKeysByEveryCharacter)
{
    const QString keys[] = {u"a"_s, u"A"_s, u"a "_s, u" a"_s, u"a.b"_s, u"ä"_s, u"a=b"_s, u"#a"_s, u"\"a\""_s, u"鍵"_s};
    for (const QString &key : keys) {
        this->port().set(key, key + u" value"_s);
    }
    for (const QString &key : keys) {
        EXPECT_EQ(this->value(key), DefaultsValue(QString(key + u" value"_s))) << key.toStdString();
    }
    this->port().remove(u"a"_s);
    EXPECT_EQ(this->value(u"a"_s), std::nullopt);
    EXPECT_EQ(this->value(u"A"_s), DefaultsValue(u"A value"_s));
}

TYPED_TEST_P(UserDefaultsContract, ReadsOtherDomainsAndKeepsThemApart)
{
    EXPECT_EQ(this->port().persistentDomain(u"com.example.old"_s), std::nullopt);
    this->m_database.makeDomain(u"com.example.old"_s, u"settings.a"_s, true);
    EXPECT_EQ(this->port().persistentDomain(u"com.example.old"_s), (DefaultsDictionary{{u"settings.a"_s, true}}));
    EXPECT_EQ(this->value(u"settings.a"_s), std::nullopt);
    this->port().set(u"settings.a"_s, false);
    EXPECT_EQ(this->port().persistentDomain(u"com.example.old"_s), (DefaultsDictionary{{u"settings.a"_s, true}}));
}

TYPED_TEST_P(UserDefaultsContract, TellsOfChangesFromOutsideOnly)
{
    int calls = 0;
    this->port().setExternalChangeHandler([&calls] { ++calls; });
    this->port().set(u"a"_s, true);
    this->port().remove(u"a"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
    this->m_database.changeFromOutside(u"b"_s, u"x"_s);
    EXPECT_TRUE(happens([&] { return calls == 1; }));
    EXPECT_EQ(this->value(u"b"_s), DefaultsValue(u"x"_s));
    this->m_database.changeFromOutside(u"b"_s, std::nullopt);
    EXPECT_TRUE(happens([&] { return calls == 2; }));
    EXPECT_EQ(this->value(u"b"_s), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, CallsTheLastHandlerWhichMayRemoveItself)
{
    int earlier = 0;
    int later = 0;
    this->port().setExternalChangeHandler([&earlier] { ++earlier; });
    this->port().setExternalChangeHandler([&] {
        ++later;
        this->port().setExternalChangeHandler({});
    });
    this->m_database.changeFromOutside(u"a"_s, true);
    EXPECT_TRUE(happens([&] { return later == 1; }));
    this->m_database.changeFromOutside(u"a"_s, false);
    QCoreApplication::processEvents();
    EXPECT_EQ(later, 1);
    EXPECT_EQ(earlier, 0);
}

TYPED_TEST_P(UserDefaultsContract, ObserverMaySetValues)
{
    this->port().setExternalChangeHandler([this] { this->port().set(u"seen"_s, true); });
    this->m_database.changeFromOutside(u"a"_s, true);
    EXPECT_TRUE(happens([&] { return this->value(u"seen"_s).has_value(); }));
    EXPECT_EQ(this->value(u"a"_s), DefaultsValue(true));
    this->port().setExternalChangeHandler({});
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, HasNothingAtFirst, GivesBackEveryTypeAsItWasSet,
                            TellsApartKeysByEveryCharacter, ReadsOtherDomainsAndKeepsThemApart,
                            TellsOfChangesFromOutsideOnly, CallsTheLastHandlerWhichMayRemoveItself,
                            ObserverMaySetValues);

} // namespace orvesa::tests
