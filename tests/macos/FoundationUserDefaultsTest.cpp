#include "Platform/macos/FoundationUserDefaults.h"

#include "Platform/UserDefaultsContract.h"
#include "macos/ObjectiveCTest.h"
#include "macos/recorders/Foundation.h"

#include <CoreFoundation/CoreFoundation.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

struct Objects {
    recorders::Object *operator()(bool value) const
    {
        return recorders::referenceTo<recorders::Object *>(
            reinterpret_cast<const recorders::Object *>(value ? kCFBooleanTrue : kCFBooleanFalse));
    }
    recorders::Object *operator()(qint64 value) const { return new recorders::NumberObject(std::int64_t{value}); }
    recorders::Object *operator()(double value) const { return new recorders::NumberObject(value); }
    recorders::Object *operator()(const QString &value) const { return new recorders::StringObject(value); }
    recorders::Object *operator()(const QByteArray &value) const { return new recorders::DataObject(value); }
};

/// The user's database, with the program's domain "app"; another process's changes are looked for when the program
/// becomes active.
class FoundationDatabase final {
public:
    FoundationDatabase() = default;
    ~FoundationDatabase() { recorders::drainPool(); }
    Q_DISABLE_COPY_MOVE(FoundationDatabase)

    [[nodiscard]] UserDefaultsPort &port() { return m_defaults; }
    void changeFromOutside(const QString &key, const std::optional<DefaultsValue> &value)
    {
        m_database.set(u"app"_s, key, value ? std::visit(Objects(), *value) : nullptr);
        recorders::postNotification(u"NSApplicationDidBecomeActiveNotification"_s);
    }
    void makeDomain(const QString &name, const QString &key, bool value)
    {
        m_database.set(name, key, Objects()(value));
    }
    [[nodiscard]] recorders::DefaultsDatabase &database() { return m_database; }

private:
    recorders::DefaultsDatabase m_database{u"app"_s};
    FoundationUserDefaults m_defaults{u"app"_s};
};

class FoundationUserDefaultsTest : public tests::ObjectiveCTest {};

} // namespace

namespace tests {
INSTANTIATE_TYPED_TEST_SUITE_P(Foundation, UserDefaultsContract, FoundationDatabase);
} // namespace tests

TEST_F(FoundationUserDefaultsTest, LeavesNothingBehind)
{
    {
        FoundationDatabase database;
        int changes = 0;
        database.port().setExternalChangeHandler([&changes] { ++changes; });
        database.port().setExternalChangeHandler([&changes] { changes += 10; });
        EXPECT_EQ(recorders::observers(), 1U);
        for (const DefaultsValue &value : {DefaultsValue(true), DefaultsValue(qint64{5}), DefaultsValue(2.5),
                                           DefaultsValue(u"x"_s), DefaultsValue(QByteArray("[]"))}) {
            database.port().set(u"settings.a"_s, value);
            EXPECT_EQ(database.port().value(u"settings.a"_s), value);
        }
        database.changeFromOutside(u"settings.a"_s, u"y"_s);
        database.changeFromOutside(u"settings.a"_s, u"y"_s);
        EXPECT_EQ(changes, 10) << "the same value is no change";
        (void)database.port().persistentDomain(u"app"_s);
    }
    EXPECT_EQ(recorders::observers(), 0U);
}

TEST_F(FoundationUserDefaultsTest, PassesOverValuesOfOtherTypes)
{
    FoundationDatabase database;
    database.database().set(u"app"_s, u"list"_s, new recorders::ArrayObject({}));
    database.database().set(u"app"_s, u"text"_s, new recorders::StringObject(u"x"_s));
    EXPECT_EQ(database.port().value(u"list"_s), std::nullopt);
    EXPECT_EQ(database.port().persistentDomain(u"app"_s), (DefaultsDictionary{{u"text"_s, u"x"_s}}));
}

} // namespace orvesa
