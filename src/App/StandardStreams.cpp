#include "App/StandardStreams.h"

#include <QByteArray>
#include <QFile>
#include <QStringDecoder>

#include <cstdio>

namespace orvesa::StandardStreams {

namespace {

bool write(std::FILE *stream, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    const bool written = std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stream) ==
                         static_cast<std::size_t>(line.size());
    return std::fflush(stream) == 0 && written;
}

} // namespace

std::optional<QString> readAll()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = input.readAll();
    if (input.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    // A byte order mark is a character like any other here: the text goes on exactly as it came.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
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
