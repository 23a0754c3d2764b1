#include "AI/SystemProxies.h"

#include "AI/LoopbackHost.h"

#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QThread>

#include <map>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

/// What the system said last, by host and port. Main thread.
class SystemProxies::Answers final {
public:
    using Place = std::pair<QString, int>;

    [[nodiscard]] static Place placeOf(const QUrl &url)
    {
        // Qt names the opening of a connection by schemes of its own.
        return {url.host(), url.port(url.scheme().endsWith("https"_L1) ? 443 : 80)};
    }

    void keep(const QUrl &url, QList<QNetworkProxy> proxies) { m_proxies[placeOf(url)] = std::move(proxies); }

    [[nodiscard]] QList<QNetworkProxy> proxies(const QUrl &url) const
    {
        const auto found = m_proxies.find(placeOf(url));
        const bool isKnown = found != m_proxies.end() && !found->second.isEmpty();
        return isKnown ? found->second : QList<QNetworkProxy>{QNetworkProxy(QNetworkProxy::NoProxy)};
    }

private:
    std::map<Place, QList<QNetworkProxy>> m_proxies;
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
    m_asker->ask(m_question, url,
                 [answers = m_answers, url, context = QPointer(context),
                  known = std::move(known)](const QList<QNetworkProxy> &proxies) {
                     answers->keep(url, proxies);
                     if (context != nullptr) {
                         known();
                     }
                 });
}

} // namespace orvesa
