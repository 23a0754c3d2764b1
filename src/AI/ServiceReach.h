#pragma once

// Whether a service can be reached from here at all: one request without a key and without a body, whose answer counts
// whatever it says.
//
// Main thread; suspends, for fifteen seconds at most. The outcome carries no address and no text of anybody else's.

#include <QCoroTask>

#include <QObject>
#include <QUrl>

#include <chrono>

QT_BEGIN_NAMESPACE
class QNetworkAccessManager;
QT_END_NAMESPACE

namespace orvesa {

class SystemProxies;

class ServiceReach final : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        answered,
        nameNotFound,
        refused,
        timedOut,
        encryptionFailed,
        proxyFailed,
        unreachable,
    };

    struct Result {
        Outcome outcome = Outcome::unreachable;
        int status = 0;                       ///< of HTTP, 0 without an answer
        std::chrono::milliseconds elapsed{0}; ///< from the request to its outcome
    };

    static constexpr std::chrono::milliseconds bound = std::chrono::seconds(15);

    /// Manager and proxies must outlive it.
    ServiceReach(QNetworkAccessManager &manager, SystemProxies &proxies, std::chrono::milliseconds timeout = bound);

    [[nodiscard]] QCoro::Task<Result> ask(QUrl address);

Q_SIGNALS:
    void proxiesKnown(bool areKnown);

private:
    QNetworkAccessManager &m_manager;
    SystemProxies &m_proxies;
    std::chrono::milliseconds m_timeout;
};

} // namespace orvesa
