#include "Tools/Capture/PortalCapture.h"

#include "Tools/Capture/ImageOutput.h"
#include "Tools/Capture/PortalRequest.h"

#include <QCoreApplication>
#include <QFile>
#include <QUrl>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostBytes = qint64{64} * 1024 * 1024;

/// The portal leaves its file among the user's pictures; it was made for this capture and goes with it.
QString moved(const QString &uri, const QString &path)
{
    const QUrl address(uri);
    if (!address.isLocalFile()) {
        return u"the portal gave no file"_s;
    }
    QFile file(address.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return u"the portal's file cannot be opened: "_s + file.errorString();
    }
    const QByteArray bytes = file.read(mostBytes + 1);
    file.remove();
    return bytes.size() > mostBytes ? u"the portal's file is too large"_s : writePrivately(path, bytes);
}

} // namespace

QString captureThroughPortal(int &argc, char **argv, const QString &path)
{
    QCoreApplication application(argc, argv);
    PortalRequest request;
    QObject::connect(&request, &PortalRequest::finished, &application, &QCoreApplication::quit, Qt::QueuedConnection);
    request.start();
    QCoreApplication::exec();
    if (!request.failure().isEmpty()) {
        return request.failure();
    }
    return request.uri().isEmpty() ? QString() : moved(request.uri(), path);
}

} // namespace orvesa
