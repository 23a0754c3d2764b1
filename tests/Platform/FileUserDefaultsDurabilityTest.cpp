// What is left of the preferences when processes are killed, disks are full and two programs write at once.
//
// ORVESA_KILLS=10000 in the environment kills that many processes; the usual number is one for every day.

#include "Platform/ManyWriters.h"
#include "Platform/SmallDisk.h"
#include "Platform/linux/FileUserDefaults.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <new>
#include <random>
#include <thread>

#include <grp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString key = u"settings.customPrompts"_s;
const QByteArray head = "# kept\nother.key = [not understood]\n";

/// A value of a size of its own, from a few bytes to some blocks.
QByteArray valueOf(int number)
{
    return QByteArray::number(number) + ':' + QByteArray((number * 7919) % 20000, static_cast<char>('a' + number % 26));
}

QByteArray fileOf(int number)
{
    return number == 0 ? head : head + "settings.customPrompts = data '" + valueOf(number) + "'\n";
}

DefaultsValue text(const char *value)
{
    return QString::fromUtf8(value);
}

int numberIn(const FileUserDefaults &defaults)
{
    const auto value = defaults.value(key);
    const auto *data = value ? std::get_if<QByteArray>(&*value) : nullptr;
    return data == nullptr ? 0 : data->left(data->indexOf(':')).toInt();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

class FileUserDefaultsDurability : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString &name = u"app.conf"_s) const { return m_folder.filePath(name); }
    [[nodiscard]] FileUserDefaults make() const { return FileUserDefaults(u"app"_s, m_folder.path()); }
    void write(const QByteArray &bytes) const { ASSERT_TRUE(writeFile(path(), bytes)); }
    [[nodiscard]] QStringList files() const { return filesIn(m_folder.path()); }

    /// Runs the body in a process of its own, whose failures are this test's.
    static void inChild(const std::function<void()> &body)
    {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            try {
                body();
            } catch (const std::exception &error) {
                ADD_FAILURE() << error.what();
            }
            std::fflush(nullptr);
            ::_exit(HasFailure() ? 1 : 0);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << "see the failures above";
    }

    QTemporaryDir m_folder;
};

/// What a process that is going to be killed has begun and finished to set, in memory that outlives it.
struct Progress {
    std::atomic<int> begun = 0;
    std::atomic<int> finished = 0;
};

class SharedProgress final {
public:
    SharedProgress()
        : m_progress(new (::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                         Progress)
    {
    }
    ~SharedProgress() { ::munmap(m_progress, sizeof(Progress)); }
    Q_DISABLE_COPY_MOVE(SharedProgress)

    Progress *operator->() const { return m_progress; }

private:
    Progress *m_progress;
};

int killCount()
{
    constexpr int everyDay = 300;
    const int wanted = qEnvironmentVariableIntValue("ORVESA_KILLS");
    return wanted > 0 ? wanted : everyDay;
}

/// Starts writers and kills each of them at some moment. After every kill the file has to be the last one that was
/// finished, or the one that was being written, as a whole.
void killWriters(const QString &folder, std::chrono::microseconds longest, const std::function<void(int)> &beforeEach)
{
    const QString path = folder + u"/app.conf"_s;
    ASSERT_TRUE(writeFile(path, head));
    const SharedProgress progress;
    std::mt19937 random(20260101); // the same moments in every run, as far as moments can be the same
    std::uniform_int_distribution<qint64> moment(0, longest.count());
    int inTheMiddle = 0;
    int leftBehind = 0;
    for (int kill = 0; kill < killCount(); ++kill) {
        beforeEach(kill);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            FileUserDefaults defaults(u"app"_s, folder);
            for (int number = progress->begun + 1;; ++number) {
                progress->begun = number;
                defaults.set(key, valueOf(number));
                if (!defaults.hasUnwrittenChanges()) {
                    progress->finished = number;
                }
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;

        const QByteArray content = contentOf(path);
        const int begun = progress->begun;
        const int finished = progress->finished;
        ASSERT_TRUE(content == fileOf(finished) || content == fileOf(begun))
            << "kill " << kill << " between " << finished << " and " << begun << " left " << content.size()
            << " bytes that begin " << content.left(100).constData();
        ASSERT_EQ(numberIn(FileUserDefaults(u"app"_s, folder)), content == fileOf(begun) ? begun : finished);
        inTheMiddle += begun != finished ? 1 : 0;
        const QStringList names = filesIn(folder);
        leftBehind += names.contains(u"app.conf.new"_s) ? 1 : 0;
        ASSERT_LE(names.size(), 4) << names.join(u' ').toStdString();
        progress->finished = content == fileOf(begun) ? begun : finished;
    }
    std::printf("%d kills: %d inside a change, %d left a temporary file; %d changes were begun; none was lost\n",
                killCount(), inTheMiddle, leftBehind, progress->begun.load());
    EXPECT_GT(inTheMiddle, killCount() / 4) << "the moments were too kind";
}

} // namespace

TEST_F(FileUserDefaultsDurability, ReadsBackAStateThatWasSetAfterEveryKill)
{
    killWriters(m_folder.path(), 9ms, [](int) {});
    make().set(u"last"_s, true);
    EXPECT_EQ(files(), (QStringList{u".app.conf.lock"_s, u"app.conf"_s})) << "the next change clears up";
}

TEST_F(FileUserDefaultsDurability, ReadsBackAStateThatWasSetAfterEveryKillOnAFullDisk)
{
    inChild([this] {
        tests::SmallDisk disk(m_folder.path());
        killWriters(disk.folder(), 3ms, [&disk](int kill) { disk.fillBut(kill % 11); });
    });
}

TEST_F(FileUserDefaultsDurability, LosesNoneOfAThousandChangesOfEachOfTwoProcesses)
{
    tests::expectNothingLostBetween(2, 1000, u"app"_s, m_folder.path());
}

TEST_F(FileUserDefaultsDurability, GoesOnWithoutTheLockOfAProcessThatWasStopped)
{
    write("a = 1\n");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const DefaultsFile file(path());
        const DefaultsFile::Lock lock(file);
        for (ssize_t told = ::write(ready[1], lock.isHeld() ? "y" : "n", 1); told == 1;) {
            ::pause();
        }
    }
    char held = 0;
    ASSERT_EQ(::read(ready[0], &held, 1), 1);
    EXPECT_EQ(held, 'y');
    const auto begun = std::chrono::steady_clock::now();
    FileUserDefaults defaults = make();
    defaults.set(u"a"_s, qint64{2});
    EXPECT_FALSE(defaults.hasUnwrittenChanges());
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
    EXPECT_EQ(contentOf(path()), "a = 2\n");
    EXPECT_EQ(files(), (QStringList{u".app.conf.lock"_s, u"app.conf"_s}));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(FileUserDefaultsDurability, KeepsWholeStatesOnAFullDisk)
{
    inChild([this] {
        tests::SmallDisk disk(m_folder.path());
        const QString file = disk.folder() + u"/app.conf"_s;
        FileUserDefaults defaults(u"app"_s, disk.folder());
        defaults.set(u"a"_s, true);
        const QByteArray introduction = contentOf(file);
        QByteArray onDisk = introduction;
        int refused = 0;
        int written = 0;
        for (int number = 1; number <= 200; ++number) {
            disk.fillBut(number % 13);
            defaults.set(key, valueOf(number));
            EXPECT_EQ(defaults.value(key), DefaultsValue(valueOf(number))) << "the program goes on with what was set";
            const QByteArray content = contentOf(file);
            const QByteArray wanted = introduction + "settings.customPrompts = data '" + valueOf(number) + "'\n";
            EXPECT_EQ(content, defaults.hasUnwrittenChanges() ? onDisk : wanted) << number;
            (defaults.hasUnwrittenChanges() ? refused : written) += 1;
            onDisk = content;
        }
        EXPECT_GT(refused, 20);
        EXPECT_GT(written, 20);
        disk.fillBut(0);
        defaults.set(u"b"_s, QString(9000, u'b'));
        EXPECT_TRUE(defaults.hasUnwrittenChanges());
        disk.empty();
        defaults.set(u"c"_s, true);
        EXPECT_FALSE(defaults.hasUnwrittenChanges()) << "written as soon as there is room";
        const FileUserDefaults again(u"app"_s, disk.folder());
        EXPECT_EQ(again.value(u"b"_s), DefaultsValue(QString(9000, u'b')));
        EXPECT_EQ(again.value(u"c"_s), DefaultsValue(true));
        EXPECT_EQ(filesIn(disk.folder()), (QStringList{u".app.conf.lock"_s, u"app.conf"_s}));
        std::printf("full disk: %d changes written, %d refused, every state whole\n", written, refused);
    });
}

TEST_F(FileUserDefaultsDurability, WorksInMemoryOnAReadOnlyDisk)
{
    inChild([this] {
        tests::SmallDisk disk(m_folder.path());
        FileUserDefaults(u"app"_s, disk.folder()).set(u"a"_s, text("saved"));
        if (!disk.makeReadOnly()) {
            // Without a mount of one's own: a folder that may not be written, for somebody who is not root.
            ASSERT_NE(::geteuid(), 0U);
            ASSERT_EQ(::chmod(QFile::encodeName(disk.folder()).constData(), 0500), 0);
        }
        FileUserDefaults defaults(u"app"_s, disk.folder());
        EXPECT_EQ(defaults.value(u"a"_s), text("saved"));
        defaults.set(u"a"_s, text("changed"));
        EXPECT_EQ(defaults.value(u"a"_s), text("changed"));
        EXPECT_TRUE(defaults.hasUnwrittenChanges());
        EXPECT_EQ(FileUserDefaults(u"app"_s, disk.folder()).value(u"a"_s), text("saved"));
        disk.makeWritable();
        ::chmod(QFile::encodeName(disk.folder()).constData(), 0700);
        defaults.set(u"b"_s, true);
        EXPECT_FALSE(defaults.hasUnwrittenChanges());
        EXPECT_EQ(FileUserDefaults(u"app"_s, disk.folder()).value(u"a"_s), text("changed"));
    });
}

TEST_F(FileUserDefaultsDurability, LeavesAFileAloneThatItMayNotRead)
{
    write("a = \"secret to it\"\n");
    inChild([this] {
        const QByteArray folder = QFile::encodeName(m_folder.path());
        const QByteArray file = QFile::encodeName(path());
        if (::geteuid() == 0) {
            // Root may read everything, so somebody else tries.
            constexpr uid_t nobody = 65534;
            ASSERT_EQ(::chown(folder.constData(), nobody, nobody), 0);
            ASSERT_EQ(::chmod(file.constData(), 0600), 0);
            ASSERT_TRUE(::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        } else {
            ASSERT_EQ(::chmod(file.constData(), 0), 0);
        }
        FileUserDefaults defaults = make();
        EXPECT_EQ(defaults.value(u"a"_s), std::nullopt);
        defaults.set(u"a"_s, text("mine"));
        EXPECT_EQ(defaults.value(u"a"_s), text("mine"));
        EXPECT_TRUE(defaults.hasUnwrittenChanges());
    });
    ASSERT_EQ(::chmod(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_EQ(contentOf(path()), "a = \"secret to it\"\n");
}

} // namespace orvesa
