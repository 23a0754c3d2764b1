#include "Platform/linux/GLibContextPump.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <map>
#include <utility>

#include <glib.h>

namespace orvesa {

std::shared_ptr<GLibContextPump> GLibContextPump::hold()
{
    static std::weak_ptr<GLibContextPump> shared;
    auto pump = shared.lock();
    if (!pump) {
        // Its last holder may let go of it while it is at work.
        pump.reset(new GLibContextPump, [](GLibContextPump *last) {
            last->disarm();
            last->deleteLater();
        });
        shared = pump;
    }
    return pump;
}

GLibContextPump::GLibContextPump()
{
    const QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    if (dispatcher != nullptr && dispatcher->inherits("QEventDispatcherGlib")) {
        return;
    }
    // Owned for as long as this lives: other threads wake a context only if somebody owns it.
    m_isNeeded = g_main_context_acquire(g_main_context_default()) != FALSE;
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &GLibContextPump::iterate);
}

GLibContextPump::~GLibContextPump()
{
    disarm();
    if (m_isNeeded) {
        g_main_context_release(g_main_context_default());
    }
}

void GLibContextPump::look()
{
    if (m_isNeeded) {
        m_timer.start(0);
    }
}

void GLibContextPump::disarm()
{
    m_timer.stop();
    for (QSocketNotifier *const notifier : m_notifiers) {
        notifier->setEnabled(false);
        notifier->deleteLater(); // it may be the one that is being activated
    }
    m_notifiers.clear();
}

void GLibContextPump::iterate()
{
    disarm();
    const auto self = weak_from_this().lock();
    while (g_main_context_iteration(g_main_context_default(), FALSE) != FALSE) {
    }
    if (self) {
        arm();
    }
}

void GLibContextPump::arm()
{
    GMainContext *const context = g_main_context_default();
    gint priority = 0;
    gint timeout = -1;
    const bool isReady = g_main_context_prepare(context, &priority) != FALSE;
    std::vector<GPollFD> descriptors(8);
    for (bool fits = false; !fits;) {
        const auto room = static_cast<gint>(descriptors.size());
        const gint count = g_main_context_query(context, priority, &timeout, descriptors.data(), room);
        descriptors.resize(static_cast<std::size_t>(count));
        fits = count <= room;
    }
    // A descriptor may be named several times; Qt takes one notifier for each kind.
    std::map<int, unsigned> events;
    for (const GPollFD &descriptor : descriptors) {
        events[descriptor.fd] |= descriptor.events;
    }
    for (const auto &[descriptor, wanted] : events) {
        for (const auto &[bit, type] : {std::pair<unsigned, QSocketNotifier::Type>{G_IO_IN, QSocketNotifier::Read},
                                        std::pair<unsigned, QSocketNotifier::Type>{G_IO_OUT, QSocketNotifier::Write}}) {
            if ((wanted & bit) != 0) {
                auto *const notifier = new QSocketNotifier(descriptor, type, this);
                connect(notifier, &QSocketNotifier::activated, this, &GLibContextPump::iterate);
                m_notifiers.push_back(notifier);
            }
        }
    }
    if (isReady || timeout >= 0) {
        m_timer.start(isReady ? 0 : timeout);
    }
}

} // namespace orvesa
