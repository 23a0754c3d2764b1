#include "Platform/linux/FileUserDefaults.h"

#include "Platform/ManyWriters.h"
#include "fakes/Happening.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

class FileUserDefaultsTest : public ::testing::Test {
protected:
    FileUserDefaultsTest() { EXPECT_TRUE(m_folder.isValid()); }

    [[nodiscard]] QString path(const QString &name = u"app.conf"_s) const { return m_folder.filePath(name); }
    [[nodiscard]] FileUserDefaults make() const { return FileUserDefaults(u"app"_s, m_folder.path()); }
    void write(const QByteArray &bytes, const QString &name = u"app.conf"_s) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    [[nodiscard]] QByteArray read(const QString &name = u"app.conf"_s) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QTemporaryDir m_folder;
};

DefaultsValue text(const char *value)
{
    return QString::fromUtf8(value);
}

} // namespace

TEST_F(FileUserDefaultsTest, GivesBackEveryTypeAfterARestart)
{
    const std::map<QString, DefaultsValue> values{
        {u"text"_s, text("Traditional Chinese")},
        {u"text.empty"_s, text("")},
        {u"text.hard"_s, QString(u"a \"b\" 'c' \\ \n\r\t\u0001 \u2028 日本 🎉 # = true"_s)},
        {u"text.surrogate"_s, QString(QChar(0xd800)) + u"x"_s},
        {u"text.number"_s, text("12")},
        {u"text.nul"_s, QString(u"a"_s + QChar(0) + u"b"_s)},
        {u"yes"_s, true},
        {u"no"_s, false},
        {u"integer"_s, std::numeric_limits<qint64>::min()},
        {u"real"_s, 0.1},
        {u"real.whole"_s, 3.0},
        {u"real.huge"_s, 1e300},
        {u"real.infinite"_s, -std::numeric_limits<double>::infinity()},
        {u"data.json"_s, QByteArray(R"({"polishSelection":{"keyCode":35,"keyLabel":"P'\""}})")},
        {u"data.binary"_s, QByteArray("\x00\xff\xfe\n", 4)},
        {u"data.mark"_s, QByteArray("\xef\xbb\xbf{}")},
        {u"data.empty"_s, QByteArray("")},
        {u"a key = \"quoted\" # 日本"_s, text("value")},
        {u""_s + QChar(u'#'), text("comment-like")},
    };
    {
        FileUserDefaults defaults = make();
        for (const auto &[key, value] : values) {
            defaults.set(key, value);
        }
    }
    const FileUserDefaults again = make();
    for (const auto &[key, value] : values) {
        EXPECT_EQ(again.value(key), value) << qPrintable(key) << "\n" << read().constData();
    }
    EXPECT_EQ(again.value(u"absent"_s), std::nullopt);
}

TEST_F(FileUserDefaultsTest, WritesLinesThatAPersonCanRead)
{
    FileUserDefaults defaults = make();
    defaults.set(u"settings.targetLanguage"_s, text("Japanese"));
    defaults.set(u"settings.thinkingEnabled"_s, true);
    defaults.set(u"settings.hotKeys"_s, QByteArray(R"({"a":1})"));
    EXPECT_EQ(read().split('\n').mid(1),
              (QList<QByteArray>{R"(settings.targetLanguage = "Japanese")", "settings.thinkingEnabled = true",
                                 R"(settings.hotKeys = data '{"a":1}')", ""}));
}

TEST_F(FileUserDefaultsTest, IsOnDiskWhenTheSetterReturns)
{
    FileUserDefaults defaults = make();
    EXPECT_FALSE(QFileInfo::exists(path())) << "nothing is written before the first change";
    defaults.remove(u"a"_s);
    EXPECT_FALSE(QFileInfo::exists(path())) << "there was nothing to remove";
    defaults.set(u"a"_s, true);
    EXPECT_TRUE(read().endsWith("a = true\n"));
    defaults.remove(u"a"_s);
    EXPECT_FALSE(read().contains("a = "));
    EXPECT_EQ(files(), (QStringList{u".app.conf.lock"_s, u"app.conf"_s})) << "no temporary files are left";
}

TEST_F(FileUserDefaultsTest, KeepsThingsPrivate)
{
    FileUserDefaults defaults(u"app"_s, path(u"new/folders"_s));
    defaults.set(u"a"_s, true);
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path(u"new/folders/app.conf"_s)).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(QFile::encodeName(path(u"new"_s)).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(FileUserDefaultsTest, KeepsCommentsOrderAndWhatItDoesNotKnow)
{
    write("# mine\n\nsettings.b = 1\nfuture.key = list [1, 2]\n  settings.a   =   'x'  \nnonsense\nsettings.b = 2\n");
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.value(u"settings.a"_s), text("x"));
    EXPECT_EQ(defaults.value(u"settings.b"_s), DefaultsValue(qint64{2}));
    defaults.set(u"settings.b"_s, qint64{3});
    EXPECT_EQ(read(), "# mine\n\nfuture.key = list [1, 2]\n  settings.a   =   'x'  \nnonsense\nsettings.b = 3\n");
}

TEST_F(FileUserDefaultsTest, MergesWithAnotherWriter)
{
    FileUserDefaults one = make();
    FileUserDefaults other = make();
    one.set(u"a"_s, text("first"));
    other.set(u"b"_s, text("second"));
    one.set(u"c"_s, text("third"));
    other.set(u"a"_s, text("changed"));
    const FileUserDefaults reader = make();
    EXPECT_EQ(reader.value(u"a"_s), text("changed"));
    EXPECT_EQ(reader.value(u"b"_s), text("second"));
    EXPECT_EQ(reader.value(u"c"_s), text("third"));
    EXPECT_EQ(one.value(u"b"_s), text("second")) << "taken over while merging";
}

TEST_F(FileUserDefaultsTest, LosesNothingBetweenManyProcesses)
{
    tests::expectNothingLostBetween(4, 25, u"app"_s, m_folder.path());
}

TEST_F(FileUserDefaultsTest, TellsOfChangesFromOutsideAndNotOfItsOwn)
{
    FileUserDefaults defaults = make();
    int changes = 0;
    defaults.setExternalChangeHandler([&changes] { ++changes; });
    defaults.set(u"a"_s, text("own"));
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 0);
    make().set(u"b"_s, text("outside"));
    EXPECT_TRUE(happens([&] { return changes == 1; }));
    EXPECT_EQ(defaults.value(u"b"_s), text("outside"));
    write("b = \"by hand\"\n");
    EXPECT_TRUE(happens([&] { return changes == 2; }));
    EXPECT_EQ(defaults.value(u"b"_s), text("by hand"));
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    write("# only a comment is new\nb = \"by hand\"\n");
    make().set(u"last"_s, true);
    EXPECT_TRUE(happens([&] { return defaults.value(u"last"_s).has_value(); }));
    EXPECT_EQ(changes, 3);
    defaults.setExternalChangeHandler({});
    make().set(u"c"_s, true);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 3);
}

TEST_F(FileUserDefaultsTest, WatchesAFolderThatWasMadeAnew)
{
    const QString folder = path(u"folder"_s);
    FileUserDefaults defaults(u"app"_s, folder);
    int changes = 0;
    defaults.setExternalChangeHandler([&changes] { ++changes; });
    defaults.set(u"a"_s, true);
    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_TRUE(happens([&] { return changes == 1; }));
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    defaults.set(u"b"_s, true);
    FileUserDefaults(u"app"_s, folder).set(u"c"_s, true);
    EXPECT_TRUE(happens([&] { return changes == 2; }));
    EXPECT_EQ(defaults.value(u"c"_s), DefaultsValue(true));
}

TEST_F(FileUserDefaultsTest, TellsWhenItsOwnWriteMeetsAChangeFromOutside)
{
    FileUserDefaults defaults = make();
    int changes = 0;
    defaults.setExternalChangeHandler([&changes] { ++changes; });
    make().set(u"b"_s, text("outside"));
    defaults.set(u"a"_s, true); // before the event loop could tell
    EXPECT_EQ(changes, 0) << "never from inside the setter";
    EXPECT_TRUE(happens([&] { return changes == 1; }));
}

TEST_F(FileUserDefaultsTest, KeepsADamagedFileBesideTheNewOne)
{
    const QByteArray damaged("a = \"x\"\n\0\0\0\xff\xfe", 13);
    write(damaged);
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    EXPECT_EQ(read(), damaged) << "reading changes nothing";
    defaults.set(u"b"_s, true);
    EXPECT_EQ(read(u"app.conf.damaged"_s), damaged);
    EXPECT_EQ(make().value(u"b"_s), DefaultsValue(true));
    write(damaged + "again");
    FileUserDefaults(u"app"_s, m_folder.path()).set(u"c"_s, true);
    EXPECT_EQ(read(u"app.conf.damaged"_s), damaged) << "the first copy stays";
    EXPECT_EQ(read(u"app.conf.damaged.2"_s), damaged + "again");
}

TEST_F(FileUserDefaultsTest, KeepsAFileThatEndsInsideACharacter)
{
    const QByteArray cut("a = \"\xe6\x97");
    write(cut);
    FileUserDefaults defaults = make();
    defaults.set(u"b"_s, true);
    EXPECT_EQ(read(u"app.conf.damaged"_s), cut);
    EXPECT_EQ(make().value(u"b"_s), DefaultsValue(true)) << "what was written can be read";
}

TEST_F(FileUserDefaultsTest, KeepsATruncatedValueWhenItIsReplaced)
{
    const QByteArray truncated("b = true\na = \"Japa");
    write(truncated);
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    EXPECT_EQ(defaults.value(u"b"_s), DefaultsValue(true));
    defaults.set(u"b"_s, false);
    EXPECT_EQ(read(), "b = false\na = \"Japa\n");
    EXPECT_FALSE(QFileInfo::exists(path(u"app.conf.damaged"_s))) << "nothing was lost yet";
    defaults.set(u"a"_s, text("English"));
    EXPECT_EQ(read(), "b = false\na = \"English\"\n");
    EXPECT_EQ(read(u"app.conf.damaged"_s), "b = false\na = \"Japa\n");
}

TEST_F(FileUserDefaultsTest, ReadsAnEmptyFileAsNothing)
{
    write("");
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    defaults.set(u"a"_s, true);
    EXPECT_EQ(read(), "a = true\n");
}

TEST_F(FileUserDefaultsTest, WorksInMemoryWhileAFolderIsInThePlace)
{
    ASSERT_TRUE(QDir().mkdir(path()));
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
    defaults.set(u"a"_s, true);
    EXPECT_EQ(defaults.value(u"a"_s), DefaultsValue(true));
    EXPECT_TRUE(QFileInfo(path()).isDir());
    ASSERT_TRUE(QDir().rmdir(path()));
    defaults.set(u"b"_s, true);
    EXPECT_EQ(make().value(u"a"_s), DefaultsValue(true)) << "written as soon as it can be";
    EXPECT_EQ(make().value(u"b"_s), DefaultsValue(true));
}

TEST_F(FileUserDefaultsTest, WorksInMemoryWhileTheDiskIsFull)
{
    write("a = true\n");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // A process that may write nothing more, which is how a full disk looks.
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_FSIZE, &none);
        FileUserDefaults defaults = make();
        defaults.set(u"b"_s, true);
        const bool isKept = defaults.value(u"b"_s) == DefaultsValue(true);
        ::_exit(isKept ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(read(), "a = true\n") << "the old content stays whole";
    EXPECT_EQ(files(), (QStringList{u".app.conf.lock"_s, u"app.conf"_s}));
}

TEST_F(FileUserDefaultsTest, WorksInMemoryWhereNothingMayBeWritten)
{
    FileUserDefaults defaults(u"app"_s, u"/proc/nowhere"_s);
    defaults.set(u"a"_s, true);
    EXPECT_EQ(defaults.value(u"a"_s), DefaultsValue(true));
    defaults.remove(u"a"_s);
    EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
}

TEST_F(FileUserDefaultsTest, LogsATroubleOnce)
{
    write("\xff\xff");
    ::testing::internal::CaptureStderr();
    FileUserDefaults defaults = make();
    (void)defaults.value(u"a"_s);
    (void)defaults.value(u"b"_s);
    defaults.set(u"a"_s, true);
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
}

TEST_F(FileUserDefaultsTest, FollowsASymbolicLink)
{
    ASSERT_TRUE(QDir().mkdir(path(u"elsewhere"_s)));
    write("a = 1\n", u"elsewhere/real.conf"_s);
    ASSERT_TRUE(QFile::link(path(u"elsewhere/real.conf"_s), path()));
    FileUserDefaults defaults = make();
    defaults.set(u"a"_s, qint64{2});
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(read(u"elsewhere/real.conf"_s), "a = 2\n");
}

TEST_F(FileUserDefaultsTest, DoesNotWaitForAPipe)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_EQ(make().value(u"a"_s), std::nullopt);
}

TEST_F(FileUserDefaultsTest, ReadsAnotherDomain)
{
    write("a = true\n", u"com.example.old.conf"_s);
    const FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.persistentDomain(u"com.example.old"_s), (DefaultsDictionary{{u"a"_s, true}}));
    EXPECT_EQ(defaults.persistentDomain(u"com.example.none"_s), std::nullopt);
    EXPECT_EQ(defaults.persistentDomain(u"../com.example.old"_s), std::nullopt);
    EXPECT_EQ(defaults.persistentDomain(QString()), std::nullopt);
}

TEST_F(FileUserDefaultsTest, StandsInTheConfigurationFolder)
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.path()));
    EXPECT_EQ(FileUserDefaults(u"com.example"_s).filePath(), path(u"com.example.conf"_s));
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(FileUserDefaults(u"com.example"_s).filePath(), QDir::homePath() + u"/.config/com.example.conf"_s);
    qunsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(FileUserDefaults(u"com.example"_s).filePath(), QDir::homePath() + u"/.config/com.example.conf"_s);
}

} // namespace orvesa
