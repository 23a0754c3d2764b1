#include "AI/SystemProxies.h"

#include "AI/LoopbackHost.h"

#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QThread>

#include <map>
#include <utility>
#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;

/// What the system said last, by host and port. Main thread.
class SystemProxies::Answers final {
public:
    using Place = std::pair<QString, int>;

    struct Waiter {
        QPointer<QObject> context;
        std::function<void()> known;
    };

    [[nodiscard]] static Place placeOf(const QUrl &url)
    {
        // Qt names the opening of a connection by schemes of its own.
        return {url.host(), url.port(url.scheme().endsWith("https"_L1) ? 443 : 80)};
    }

    /// Whether the place is being asked about already; the waiter hears of that answer then.
    [[nodiscard]] bool joins(const QUrl &url, Waiter waiter)
    {
        std::vector<Waiter> &waiters = m_waiters[placeOf(url)];
        waiters.push_back(std::move(waiter));
        return waiters.size() > 1;
    }

    void keep(const QUrl &url, QList<QNetworkProxy> proxies)
    {
        m_proxies[placeOf(url)] = std::move(proxies);
        // Taken out first: whoever hears of it may ask again.
        const auto waiters = m_waiters.extract(placeOf(url));
        for (const Waiter &waiter : waiters.mapped()) {
            if (waiter.context != nullptr) {
                waiter.known();
            }
        }
    }

    [[nodiscard]] QList<QNetworkProxy> proxies(const QUrl &url) const
    {
        const auto found = m_proxies.find(placeOf(url));
        const bool isKnown = found != m_proxies.end() && !found->second.isEmpty();
        return isKnown ? found->second : QList<QNetworkProxy>{QNetworkProxy(QNetworkProxy::NoProxy)};
    }

private:
    std::map<Place, QList<QNetworkProxy>> m_proxies;
    std::map<Place, std::vector<Waiter>> m_waiters; ///< of places that are being asked about
};

/// The thread that the system is asked in. It touches nothing of whoever asks, so that it may outlive it.
class SystemProxies::Asker final : public QThread {
public:
    Asker() { m_inThread.moveToThread(this); }

    /// Calls `answered` in the main thread.
    void ask(const Question &question, const QUrl &url, std::function<void(const QList<QNetworkProxy> &)> answered)
    {
        if (!isRunning()) {
            start();
        }
        QMetaObject::invokeMethod(&m_inThread, [this, question, url, answered = std::move(answered)] {
            const QList<QNetworkProxy> proxies = question(QNetworkProxyQuery(url));
            QMetaObject::invokeMethod(this, [answered, proxies] { answered(proxies); });
        });
    }

private:
    QObject m_inThread;
};

namespace {

/// Gives a manager the answers; the manager owns it.
template <typename Answers>
class AnsweringFactory final : public QNetworkProxyFactory {
public:
    explicit AnsweringFactory(std::shared_ptr<const Answers> answers) : m_answers(std::move(answers)) {}

    [[nodiscard]] QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return m_answers->proxies(query.url());
    }

private:
    std::shared_ptr<const Answers> m_answers;
};

} // namespace

SystemProxies::SystemProxies(QNetworkAccessManager &manager, Question question)
    : m_answers(std::make_shared<Answers>()), m_question(std::move(question)), m_asker(new Asker)
{
    manager.setProxyFactory(new AnsweringFactory<Answers>(m_answers));
}

SystemProxies::~SystemProxies()
{
    // Nothing ends a thread that hangs inside a library; the program's end must not hang with it.
    QObject::connect(m_asker, &QThread::finished, m_asker, &QObject::deleteLater);
    m_asker->quit();
    if (m_asker->wait(QDeadlineTimer(greatestEndWait))) {
        delete m_asker;
    }
}

void SystemProxies::lookUp(const QUrl &url, QObject *context, std::function<void()> known)
{
    if (hasLoopbackHost(url)) {
        known();
        return;
    }
    if (!m_answers->joins(url, {context, std::move(known)})) {
        m_asker->ask(m_question, url, [answers = m_answers, url](const QList<QNetworkProxy> &proxies) {
            answers->keep(url, proxies);
        });
    }
}

} // namespace orvesa
