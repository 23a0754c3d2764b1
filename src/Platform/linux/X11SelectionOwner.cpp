#include "Platform/linux/X11SelectionOwner.h"

#include "Platform/linux/X11SelectionServer.h"

#include <future>
#include <optional>
#include <utility>

namespace orvesa {

namespace {

/// A connection is made and a few questions are asked meanwhile, each with a bound of its own.
constexpr std::chrono::milliseconds ownBound{250};

} // namespace

/// The server lives and dies in the thread.
class X11SelectionOwner::Thread final : public QThread {
public:
    Thread()
    {
        m_inThread.moveToThread(this);
        start();
    }

    ~Thread() override
    {
        QMetaObject::invokeMethod(&m_inThread, [this] {
            if (m_server) {
                m_server->handOver([this] { quit(); });
            } else {
                quit();
            }
        });
        wait();
    }
    Q_DISABLE_COPY_MOVE(Thread)

    bool own(X11SelectionContents contents)
    {
        auto promise = std::make_shared<std::promise<bool>>();
        std::future<bool> isOwned = promise->get_future();
        QMetaObject::invokeMethod(&m_inThread, [this, promise, contents = std::move(contents)]() mutable {
            if (!m_server) {
                m_server.emplace();
            }
            promise->set_value(m_server->own(std::move(contents)));
        });
        // Not yet is no failure: the thread goes on with it, and the contents are in its hands.
        return isOwned.wait_for(ownBound) != std::future_status::ready || isOwned.get();
    }

protected:
    void run() override
    {
        exec();
        m_server.reset();
    }

private:
    QObject m_inThread;
    std::optional<X11SelectionServer> m_server;
};

X11SelectionOwner::X11SelectionOwner() = default;

X11SelectionOwner::~X11SelectionOwner() = default;

bool X11SelectionOwner::own(X11SelectionContents contents)
{
    if (!m_thread) {
        m_thread = std::make_unique<Thread>();
    }
    return m_thread->own(std::move(contents));
}

} // namespace orvesa
