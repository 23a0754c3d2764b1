#include "Platform/linux/ImageFile.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr qint64 mostBytes = qint64{64} * 1024 * 1024;
constexpr double mostPixels = 100e6;

/// Drawings are programs of a kind, whose size says nothing about what they become; and they need fonts of ours.
bool isDrawing(QByteArrayView format)
{
    return format.startsWith("svg") || format == "pdf";
}

ImageFile failed(const QString &reason)
{
    return {{}, {}, reason};
}

} // namespace

ImageFile readImageFile(const QString &path)
{
    // A pipe or a device in the file's place is not waited for.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return failed(u"the image file cannot be opened: "_s + QString::fromLocal8Bit(std::strerror(errno)));
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return failed(u"the image file cannot be opened"_s);
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return failed(u"the image is no regular file"_s);
    }
    if (status.st_size > mostBytes) {
        return failed(u"the image file is too large"_s);
    }
    ImageFile result;
    result.bytes = file.read(mostBytes);
    QBuffer buffer(&result.bytes);
    buffer.open(QIODevice::ReadOnly);
    if (isDrawing(QImageReader::imageFormat(&buffer))) {
        return failed(u"the file is a drawing and no image of pixels"_s);
    }
    QImageReader reader(&buffer);
    result.size = reader.size();
    if (!result.size.isValid()) {
        return failed(u"the file is no image that can be read"_s);
    }
    if (static_cast<double>(result.size.width()) * result.size.height() > mostPixels) {
        return failed(u"the image is too large"_s);
    }
    return result;
}

} // namespace orvesa
