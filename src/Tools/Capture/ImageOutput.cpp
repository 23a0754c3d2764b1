#include "Tools/Capture/ImageOutput.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QString reason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += count > 0 ? count : 0;
    }
    return true;
}

} // namespace

QString writePrivately(const QString &path, const QByteArray &bytes)
{
    // A name of its own, so that a tool that is ended in the middle leaves nothing under the one that is looked for.
    const QByteArray unfinished = QFile::encodeName(path) + ".part" + QByteArray::number(::getpid());
    const int descriptor = ::open(unfinished.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) {
        return u"the capture cannot be written: "_s + reason();
    }
    const bool complete = writeAll(descriptor, bytes);
    const QString failure = complete ? QString() : reason();
    ::close(descriptor);
    if (complete && std::rename(unfinished.constData(), QFile::encodeName(path).constData()) == 0) {
        return {};
    }
    QString message = u"the capture cannot be written: "_s + (complete ? reason() : failure);
    ::unlink(unfinished.constData());
    return message;
}

QString writeCapture(const QString &path, const QImage &image, double scale)
{
    constexpr double dotsPerInch = 96;
    constexpr double metersPerInch = 0.0254;
    QImage measured = image;
    const int dotsPerMeter = static_cast<int>(std::lround(dotsPerInch * scale / metersPerInch));
    measured.setDotsPerMeterX(dotsPerMeter);
    measured.setDotsPerMeterY(dotsPerMeter);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    constexpr int quickly = 90; // little compression: the file lives for a moment
    writer.setQuality(quickly);
    if (!writer.write(measured)) {
        return u"the capture cannot be written: "_s + writer.errorString();
    }
    return writePrivately(path, bytes);
}

} // namespace orvesa
