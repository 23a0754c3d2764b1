#include "Platform/ManyWriters.h"

#include "Platform/linux/FileUserDefaults.h"

#include <gtest/gtest.h>

#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace orvesa::tests {

namespace {

using namespace Qt::StringLiterals;

QString keyOf(int writer, int change)
{
    return u"k%1.%2"_s.arg(writer).arg(change);
}

[[noreturn]] void write(int writer, int changes, const QString &domain, const QString &folder)
{
    FileUserDefaults defaults(domain, folder);
    for (int change = 0; change < changes; ++change) {
        defaults.set(keyOf(writer, change), qint64{change});
    }
    ::_exit(defaults.hasUnwrittenChanges() ? 1 : 0);
}

} // namespace

void expectNothingLostBetween(int writers, int changes, const QString &domain, const QString &folder)
{
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            write(writer, changes, domain, folder);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    const FileUserDefaults reader(domain, folder);
    int found = 0;
    for (int writer = 0; writer < writers; ++writer) {
        for (int change = 0; change < changes; ++change) {
            found += reader.value(keyOf(writer, change)) == DefaultsValue(qint64{change}) ? 1 : 0;
        }
    }
    EXPECT_EQ(found, writers * changes);
}

} // namespace orvesa::tests
