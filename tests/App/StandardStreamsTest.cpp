// The process's standard streams when they are not what a program hopes for.

#include "App/StandardStreams.h"

#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <variant>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using StandardStreams::InputTrouble;

/// Puts another file in a standard stream's place for a while.
class Replaced final {
public:
    Replaced(int stream, int replacement) : m_stream(stream), m_usual(::dup(stream))
    {
        ::dup2(replacement, stream);
        ::close(replacement);
    }
    ~Replaced()
    {
        ::dup2(m_usual, m_stream);
        ::close(m_usual);
    }
    Q_DISABLE_COPY_MOVE(Replaced)

private:
    int m_stream;
    int m_usual;
};

/// A pipe's end to read from, which holds the bytes and then ends.
int pipeWith(const QByteArray &bytes)
{
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::pipe(ends.data()), 0);
    EXPECT_EQ(::write(ends[1], bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
    ::close(ends[1]);
    return ends[0];
}

std::variant<QString, InputTrouble> readFrom(int descriptor)
{
    const Replaced input(STDIN_FILENO, descriptor);
    return StandardStreams::readAll();
}

using Read = std::variant<QString, InputTrouble>;

TEST(StandardInput, IsTakenAsItIs)
{
    EXPECT_EQ(readFrom(pipeWith(QByteArray("\xEF\xBB\xBF a\0b \r\n", 10))), Read(u"\uFEFF a\0b \r\n"_s));
    EXPECT_EQ(readFrom(pipeWith({})), Read(QString()));
}

TEST(StandardInput, IsRefusedWhenItIsNoText)
{
    EXPECT_EQ(readFrom(pipeWith("caf\xE9")), Read(InputTrouble::unreadable));
    EXPECT_EQ(readFrom(::open("/", O_RDONLY | O_DIRECTORY)), Read(InputTrouble::unreadable));
}

TEST(StandardInput, IsRefusedWhenItDoesNotEnd)
{
    EXPECT_EQ(readFrom(::open("/dev/zero", O_RDONLY)), Read(InputTrouble::tooLarge));
}

/// What the stream holds after `print`, with a terminal in its place.
QByteArray shownOnTerminal(int stream, const std::function<void()> &print)
{
    const int keyboard = ::posix_openpt(O_RDWR | O_NOCTTY);
    ::grantpt(keyboard);
    ::unlockpt(keyboard);
    const int screen = ::open(::ptsname(keyboard), O_RDWR | O_NOCTTY);
    {
        const Replaced output(stream, screen);
        print();
    }
    // It comes in parts, and ends with an error: nobody has the other end open any more.
    QByteArray shown;
    std::array<char, 256> part{};
    for (ssize_t count = 0; (count = ::read(keyboard, part.data(), part.size())) > 0;) {
        shown.append(part.data(), count);
    }
    ::close(keyboard);
    return shown;
}

TEST(StandardOutput, CommandsNoTerminal)
{
    const QString answer = u"a\x1b[31mb\u009b2J\tc\nd"_s;
    EXPECT_EQ(shownOnTerminal(STDOUT_FILENO, [&] { EXPECT_TRUE(StandardStreams::writeOutput(answer)); }),
              QByteArray("a\xEF\xBF\xBD[31mb\xEF\xBF\xBD"
                         "2J\tc\r\nd\r\n"));
    EXPECT_EQ(shownOnTerminal(STDERR_FILENO, [&] { StandardStreams::writeError(answer); }),
              QByteArray("a\xEF\xBF\xBD[31mb\xEF\xBF\xBD"
                         "2J\tc\r\nd\r\n"));
}

TEST(StandardOutput, ShowsEitherKindOfLineBreakOnATerminal)
{
    const QString answer = u"one\r\ntwo\nback\rhere\r\n"_s;
    const QByteArray expected("one\r\ntwo\r\nback\xEF\xBF\xBDhere\r\n\r\n");
    EXPECT_EQ(shownOnTerminal(STDOUT_FILENO, [&] { EXPECT_TRUE(StandardStreams::writeOutput(answer)); }), expected);
    EXPECT_EQ(shownOnTerminal(STDERR_FILENO, [&] { StandardStreams::writeError(answer); }), expected);
}

TEST(StandardOutput, IsUnchangedForAnotherProgram)
{
    const QString answer = u"a\x1b[31mb"_s;
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(StandardStreams::writeOutput(answer));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "a\x1b[31mb\n");
    ::testing::internal::CaptureStderr();
    StandardStreams::writeError(u"two\r\nlines"_s);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "two\r\nlines\n");
}

/// The exit code of a process that was started without the streams and runs `body`.
int withoutStreams(std::initializer_list<int> missing, const std::function<bool()> &body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        for (const int stream : missing) {
            ::close(stream);
        }
        StandardStreams::reserveMissing();
        ::_exit(body() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(MissingStreams, AreNotTakenByWhatIsOpenedFirst)
{
    const auto opensElsewhere = [] { return ::open("/", O_RDONLY | O_DIRECTORY) > STDERR_FILENO; };
    EXPECT_EQ(withoutStreams({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}, opensElsewhere), EXIT_SUCCESS);
    EXPECT_EQ(withoutStreams({STDOUT_FILENO}, opensElsewhere), EXIT_SUCCESS);
}

TEST(MissingStreams, FailWhenTheyAreUsed)
{
    EXPECT_EQ(withoutStreams({STDOUT_FILENO}, [] { return !StandardStreams::writeOutput(u"answer"_s); }), EXIT_SUCCESS);
    EXPECT_EQ(withoutStreams({STDIN_FILENO, STDOUT_FILENO},
                             [] { return StandardStreams::readAll() == Read(InputTrouble::unreadable); }),
              EXIT_SUCCESS);
}

TEST(MissingStreams, LeaveAloneWhatIsThere)
{
    const auto isSame = [] { return ::write(STDOUT_FILENO, "", 0) == 0; };
    EXPECT_EQ(withoutStreams({STDIN_FILENO}, isSame), EXIT_SUCCESS);
}

} // namespace
} // namespace orvesa
