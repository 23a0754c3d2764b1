#include "AI/LoopbackHost.h"

#include <QHostAddress>

namespace orvesa {

using namespace Qt::StringLiterals;

bool hasLoopbackHost(const QUrl &url)
{
    const QString host = url.host();
    if (host == "localhost"_L1) {
        return true;
    }
    QHostAddress address;
    return address.setAddress(host) && address.isLoopback();
}

} // namespace orvesa
