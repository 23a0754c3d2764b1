#pragma once

// Which proxies the system wants requests to go through: the environment's variables and the desktop's settings.
//
// Asking the system can take long (a script that it has to fetch, a name that nobody resolves), so it is asked in a
// thread of its own and each time anew, since settings change while the program runs. Addresses of this machine are
// reached directly. Main thread; the manager must outlive it and uses the answers for its requests from then on.

#include <QList>
#include <QNetworkProxy>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QNetworkAccessManager;
QT_END_NAMESPACE

namespace orvesa {

class SystemProxies final : public QObject {
    Q_OBJECT

public:
    /// Called in a thread of its own; may block.
    using Question = std::function<QList<QNetworkProxy>(const QNetworkProxyQuery &)>;

    explicit SystemProxies(QNetworkAccessManager &manager,
                           Question question = &QNetworkProxyFactory::systemProxyForQuery);
    /// Waits for a question that is being asked, but no longer than this.
    static constexpr std::chrono::milliseconds greatestEndWait{500};
    ~SystemProxies() override;

    /// Calls `known` once the proxies for the address are known to the manager; at once for an address of this machine,
    /// never when `context` is gone by then. One question is asked for all who want to know of a place meanwhile: a
    /// script can take seconds, each time. Questions are answered in their order.
    void lookUp(const QUrl &url, QObject *context, std::function<void()> known);

private:
    class Answers;
    class Asker;

    std::shared_ptr<Answers> m_answers;
    Question m_question;
    Asker *m_asker; ///< owned, unless its thread does not end in time
};

} // namespace orvesa
