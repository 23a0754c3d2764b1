#include "Platform/linux/CoreDumps.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <functional>

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void allowAnySize()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_CORE, &limit);
}

/// Lets a process crash in a folder of its own, with dumps of any size allowed at first; its wait status.
int crash(const QString &folder, const std::function<void()> &before)
{
    const pid_t child = ::fork();
    if (child == 0) {
        allowAnySize();
        before();
        ::signal(SIGABRT, SIG_DFL);
        if (::chdir(QFile::encodeName(folder).constData()) == 0) {
            ::raise(SIGABRT);
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

} // namespace

TEST(CoreDumps, AreNotWritten)
{
    const QTemporaryDir folder;
    const int status = crash(folder.path(), [] { CoreDumps::turnOff(); });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_FALSE(WCOREDUMP(status));
}

TEST(CoreDumps, HaveALimitOfNothingAndNoMemoryInThem)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        allowAnySize();
        CoreDumps::turnOff();
        rlimit limit{};
        ::getrlimit(RLIMIT_CORE, &limit);
        const bool isEmpty = contentOf(u"/proc/self/coredump_filter"_s).trimmed().toUInt(nullptr, 16) == 0;
        ::_exit(limit.rlim_cur == 0 && isEmpty ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

} // namespace orvesa
