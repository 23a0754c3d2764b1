#include "App/SecretInput.h"

#include "Platform/SecretBuffer.h"

#include <QStringDecoder>

#include <cerrno>
#include <cstdio>

#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa::SecretInput {

namespace {

constexpr qsizetype most = 64 << 10;
constexpr char interrupt = 3;

/// Keeps the terminal from showing what is typed. Its keys for signals arrive as characters, so that no interruption
/// leaves it like that.
class QuietTerminal final {
public:
    QuietTerminal()
    {
        m_isTerminal = ::tcgetattr(STDIN_FILENO, &m_usual) == 0;
        termios quiet = m_usual;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        if (m_isTerminal) {
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
        }
    }
    ~QuietTerminal()
    {
        if (m_isTerminal) {
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_usual);
            std::fputs("\n", stderr);
        }
    }
    Q_DISABLE_COPY_MOVE(QuietTerminal)

private:
    termios m_usual{};
    bool m_isTerminal = false;
};

enum class Until { lineBreak, end };

std::optional<QByteArray> readBytes(Until until)
{
    QByteArray bytes;
    bytes.reserve(most); // never moved, so that no copy stays behind
    char character = 0;
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, &character, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count == 0 || (count == 1 && until == Until::lineBreak && character == '\n')) {
            return bytes;
        }
        const bool isInterrupted = until == Until::lineBreak && character == interrupt;
        if (count < 0 || isInterrupted || bytes.size() == most) {
            clearSecret(bytes);
            return std::nullopt;
        }
        bytes.append(character);
    }
}

} // namespace

std::optional<QString> read(const QString &question)
{
    std::optional<QByteArray> bytes;
    if (::isatty(STDIN_FILENO) == 1) {
        std::fputs(qUtf8Printable(question), stderr);
        const QuietTerminal quiet;
        bytes = readBytes(Until::lineBreak);
    } else {
        bytes = readBytes(Until::end);
    }
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
