#include "Platform/macos/CFNetworkWording.h"

#include "Platform/macos/CFConversion.h"

#include <CFNetwork/CFNetwork.h>

#include <optional>

namespace orvesa::CFNetworkWording {

namespace {

/// The system's number for the error.
std::optional<CFIndex> code(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
        return kCFURLErrorCannotConnectToHost;
    case QNetworkReply::RemoteHostClosedError:
        return kCFURLErrorNetworkConnectionLost;
    case QNetworkReply::HostNotFoundError:
        return kCFURLErrorCannotFindHost;
    case QNetworkReply::TimeoutError:
        return kCFURLErrorTimedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return kCFURLErrorSecureConnectionFailed;
    case QNetworkReply::TemporaryNetworkFailureError:
        return kCFURLErrorNotConnectedToInternet;
    case QNetworkReply::TooManyRedirectsError:
        return kCFURLErrorHTTPTooManyRedirects;
    default:
        return std::nullopt;
    }
}

} // namespace

QString text(QNetworkReply::NetworkError error)
{
    const std::optional<CFIndex> number = code(error);
    if (!number) {
        return {};
    }
    const CFOwner systemError(CFErrorCreate(kCFAllocatorDefault, kCFErrorDomainCFNetwork, *number, nullptr));
    const CFOwner description(CFErrorCopyDescription(systemError.get()));
    const QString words = description ? CFConversion::text(description.get()) : QString();
    // Without words of its own the system names the domain and the number, which tells less than Qt's.
    return words.contains(CFConversion::text(kCFErrorDomainCFNetwork)) ? QString() : words;
}

} // namespace orvesa::CFNetworkWording
