#include "Tools/Recognition/RecognitionServer.h"

#include <QBuffer>
#include <QImageReader>

#include <array>
#include <cerrno>

#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostBytes = qsizetype{64} * 1024 * 1024;
constexpr int mostMegabytesDecoded = 256; // 8K at 32 bits is half of it
constexpr qsizetype longestHeader = 64;

std::optional<QImage> decoded(const QByteArray &file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    if (format.startsWith("svg") || format == "pdf") {
        return std::nullopt; // a drawing, which needs fonts and more memory than its size tells
    }
    QImageReader::setAllocationLimit(mostMegabytesDecoded);
    QImageReader reader(&buffer);
    QImage image = reader.read();
    if (image.isNull()) {
        return std::nullopt;
    }
    return image;
}

} // namespace

RecognitionServer::RecognitionServer(int input, int output, EnginePool &pool)
    : m_input(input), m_output(output), m_pool(pool)
{
}

RecognitionServer::Outcome RecognitionServer::recognize(EnginePool &pool, const QByteArray &file)
{
    const std::optional<QImage> image = decoded(file);
    if (!image) {
        return {std::nullopt, u"the file is no image that can be read"_s};
    }
    pool.waitUntilLoaded();
    if (!pool.hasLanguages()) {
        return {std::nullopt, u"no language data; install the packages "_s + pool.missingPackages().join(u", "_s)};
    }
    TextReader reader(pool);
    return {reader.read(*image).join(u'\n'), {}};
}

bool RecognitionServer::serve(const std::function<void()> &beforeAnswer)
{
    while (true) {
        const std::optional<QByteArray> header = readLine();
        if (!header) {
            return m_buffer.isEmpty();
        }
        bool isNumber = false;
        const qsizetype count = header->startsWith("IMAGE ") ? header->sliced(6).toLongLong(&isNumber) : 0;
        if (!isNumber || count < 0 || count > mostBytes) {
            return false;
        }
        const std::optional<QByteArray> file = readBytes(count);
        if (!file) {
            return false;
        }
        const Outcome outcome = recognize(m_pool, *file);
        beforeAnswer();
        const QByteArray text = outcome.text.value_or(QString()).toUtf8();
        const QByteArray answer = outcome.text ? "TEXT " + QByteArray::number(text.size()) + '\n' + text
                                               : "FAILED " + outcome.failure.toUtf8() + '\n';
        if (!write(answer)) {
            return false;
        }
    }
}

bool RecognitionServer::fill()
{
    std::array<char, 65536> bytes{};
    ssize_t count = 0;
    do {
        count = ::read(m_input, bytes.data(), bytes.size());
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
        return false;
    }
    m_buffer.append(bytes.data(), count);
    return true;
}

std::optional<QByteArray> RecognitionServer::readLine()
{
    qsizetype end = -1;
    while ((end = m_buffer.indexOf('\n')) < 0) {
        if (m_buffer.size() > longestHeader || !fill()) {
            return std::nullopt;
        }
    }
    const QByteArray line = m_buffer.first(end);
    m_buffer.remove(0, end + 1);
    return line;
}

std::optional<QByteArray> RecognitionServer::readBytes(qsizetype count)
{
    while (m_buffer.size() < count) {
        if (!fill()) {
            return std::nullopt;
        }
    }
    QByteArray bytes = m_buffer.first(count);
    m_buffer.remove(0, count);
    return bytes;
}

bool RecognitionServer::write(const QByteArray &bytes) const
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::write(m_output, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += count > 0 ? count : 0;
    }
    return true;
}

} // namespace orvesa
