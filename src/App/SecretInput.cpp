#include "App/SecretInput.h"

#include "App/QuietTerminal.h"
#include "Platform/SecretBuffer.h"

#include <QStringDecoder>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa::SecretInput {

namespace {

constexpr qsizetype most = 64 << 10;

enum class Step { more, done, failed };

/// Takes one more byte from standard input.
Step readByte(QByteArray &bytes, std::optional<char> last)
{
    char character = 0;
    ssize_t count = 0;
    do {
        count = ::read(STDIN_FILENO, &character, 1);
    } while (count < 0 && errno == EINTR);
    if (count < 0 || (count == 1 && bytes.size() == most)) {
        return Step::failed;
    }
    if (count == 0 || character == last) {
        return Step::done;
    }
    bytes.append(character);
    return Step::more;
}

std::optional<QByteArray> result(Step step, QByteArray &bytes)
{
    if (step == Step::failed) {
        clearSecret(bytes);
        return std::nullopt;
    }
    return std::move(bytes);
}

std::optional<QByteArray> readAll()
{
    QByteArray bytes;
    bytes.reserve(most); // never moved, so that no copy stays behind
    Step step = Step::more;
    while (step == Step::more) {
        step = readByte(bytes, std::nullopt);
    }
    return result(step, bytes);
}

struct TypedLine {
    std::optional<QByteArray> bytes;
    int signal = 0; ///< that came in place of its end
};

TypedLine askOnce(const QString &question)
{
    QuietTerminal terminal;
    std::fputs(qUtf8Printable(question), stderr);
    QByteArray bytes;
    bytes.reserve(most);
    Step step = Step::more;
    while (step == Step::more) {
        const bool isSignal = terminal.awaitEvent() == QuietTerminal::Event::signal;
        step = isSignal ? Step::failed : readByte(bytes, '\n');
    }
    return {result(step, bytes), terminal.signal()};
}

std::optional<QByteArray> ask(const QString &question)
{
    for (;;) {
        TypedLine line = askOnce(question);
        if (line.signal == 0) {
            return std::move(line.bytes);
        }
        // It does now what it always does, with the terminal as it was. A stopped program goes on behind this line.
        ::raise(line.signal);
        if (line.signal != SIGTSTP) {
            return std::nullopt;
        }
    }
}

} // namespace

std::optional<QString> read(const QString &question)
{
    std::optional<QByteArray> bytes = ::isatty(STDIN_FILENO) == 1 ? ask(question) : readAll();
    if (!bytes) {
        return std::nullopt;
    }
    const SecretClearing clearing(*bytes);
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(*bytes);
    if (decoder.hasError()) {
        clearSecret(text);
        return std::nullopt;
    }
    return text;
}

} // namespace orvesa::SecretInput
