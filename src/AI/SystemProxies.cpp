#include "AI/SystemProxies.h"

#include "AI/LoopbackHost.h"

#include <QNetworkAccessManager>
#include <QPointer>

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
    : m_answers(std::make_shared<Answers>()), m_question(std::move(question))
{
    manager.setProxyFactory(new AnsweringFactory<Answers>(m_answers));
    m_asker.moveToThread(&m_thread);
}

SystemProxies::~SystemProxies()
{
    m_thread.quit();
    m_thread.wait();
}

void SystemProxies::lookUp(const QUrl &url, QObject *context, std::function<void()> known)
{
    if (hasLoopbackHost(url)) {
        known();
        return;
    }
    if (!m_thread.isRunning()) {
        m_thread.start();
    }
    const auto answered = [this, url, context = QPointer(context),
                           known = std::move(known)](const QList<QNetworkProxy> &proxies) {
        m_answers->keep(url, proxies);
        if (context != nullptr) {
            known();
        }
    };
    QMetaObject::invokeMethod(&m_asker, [this, url, answered] {
        const QList<QNetworkProxy> proxies = m_question(QNetworkProxyQuery(url));
        QMetaObject::invokeMethod(this, [answered, proxies] { answered(proxies); });
    });
}

} // namespace orvesa
