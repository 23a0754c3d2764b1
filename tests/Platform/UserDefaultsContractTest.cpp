#include "Platform/UserDefaultsContract.h"
#include "Platform/linux/FileUserDefaults.h"
#include "fakes/FakeUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace orvesa {

using namespace Qt::StringLiterals;
using tests::UserDefaultsContract;

namespace {

class FakeDatabase final {
public:
    [[nodiscard]] UserDefaultsPort &port() { return m_defaults; }
    void changeFromOutside(const QString &key, const std::optional<DefaultsValue> &value)
    {
        m_defaults.changeFromOutside(key, value);
    }
    void makeDomain(const QString &name, const QString &key, bool value)
    {
        m_defaults.preparePersistentDomain(name, {{key, value}});
    }
    void refuseWrites() { m_defaults.refuseWrites(); }

private:
    FakeUserDefaults m_defaults;
};

class FileDatabase final {
public:
    [[nodiscard]] UserDefaultsPort &port() { return m_defaults; }
    void changeFromOutside(const QString &key, const std::optional<DefaultsValue> &value)
    {
        FileUserDefaults other(u"app"_s, m_folder.path());
        if (value) {
            other.set(key, *value);
        } else {
            other.remove(key);
        }
    }
    void makeDomain(const QString &name, const QString &key, bool value)
    {
        FileUserDefaults(name, m_folder.path()).set(key, value);
    }
    void refuseWrites()
    {
        QFile::remove(m_folder.filePath(u"app.conf"_s));
        EXPECT_TRUE(QDir().mkdir(m_folder.filePath(u"app.conf"_s)));
    }

private:
    QTemporaryDir m_folder;
    FileUserDefaults m_defaults{u"app"_s, m_folder.path()};
};

/// Where writing can fail.
template <typename Database>
class UserDefaultsRefusal : public UserDefaultsContract<Database> {
};

using Databases = ::testing::Types<FakeDatabase, FileDatabase>;

} // namespace

namespace tests {
INSTANTIATE_TYPED_TEST_SUITE_P(FakeAndFile, UserDefaultsContract, Databases);
} // namespace tests

TYPED_TEST_SUITE(UserDefaultsRefusal, Databases);

TYPED_TEST(UserDefaultsRefusal, KeepsInMemoryWhatCannotBeWrittenAndSaysSo)
{
    this->m_database.refuseWrites();
    this->port().set(u"a"_s, u"x"_s);
    EXPECT_TRUE(this->port().hasUnwrittenChanges());
    EXPECT_EQ(this->value(u"a"_s), DefaultsValue(u"x"_s));
    this->port().remove(u"a"_s);
    EXPECT_TRUE(this->port().hasUnwrittenChanges());
    EXPECT_EQ(this->value(u"a"_s), std::nullopt);
}

} // namespace orvesa
