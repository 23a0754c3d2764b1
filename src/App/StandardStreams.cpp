#include "App/StandardStreams.h"

#include "Models/Text.h"

#include <QByteArray>
#include <QStringDecoder>

#include <array>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa::StandardStreams {

namespace {

constexpr QStringView harmless = u"\n\t";

/// Services end lines in either way; a terminal makes its own of them.
QString forTerminal(QString text)
{
    return printable(text.replace(u"\r\n"_s, u"\n"_s), harmless);
}

bool write(std::FILE *stream, const QString &text)
{
    const bool isTerminal = ::isatty(::fileno(stream)) == 1;
    const QByteArray line = (isTerminal ? forTerminal(text) : text).toUtf8() + '\n';
    std::clearerr(stream);
    (void)std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stream);
    // A stream that is buffered by lines has dropped what it could not write by now, and the counts do not tell.
    return std::fflush(stream) == 0 && std::ferror(stream) == 0;
}

} // namespace

void reserveMissing()
{
    // In this order: each opening takes the lowest place that is free.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const bool isMissing = ::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
        if (isMissing && ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0) {
            return; // nothing can be opened here, so nothing can take the place either
        }
    }
}

std::variant<QString, InputTrouble> readAll()
{
    constexpr std::size_t blockSize = 65536;
    static std::array<char, blockSize> block;
    QByteArray bytes;
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return InputTrouble::unreadable;
        }
        if (count == 0) {
            break;
        }
        if (bytes.size() + count > mostInput) {
            return InputTrouble::tooLarge;
        }
        bytes.append(block.data(), count);
    }
    // A byte order mark is a character like any other here: the text goes on exactly as it came.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return InputTrouble::unreadable;
    }
    return text;
}

bool writeOutput(const QString &text)
{
    return write(stdout, text);
}

void writeError(const QString &text)
{
    (void)write(stderr, text);
}

} // namespace orvesa::StandardStreams
