#include "Platform/linux/GLibContextPump.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QSocketNotifier>

#include <glib.h>

namespace orvesa {

GLibContextPump::GLibContextPump()
{
    const QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    if (dispatcher != nullptr && dispatcher->inherits("QEventDispatcherGlib")) {
        return;
    }
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &GLibContextPump::iterate);
    m_timer.start(0);
}

GLibContextPump::~GLibContextPump()
{
    disarm();
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
    const QPointer<GLibContextPump> guard(this);
    GMainContext *const context = g_main_context_default();
    while (g_main_context_iteration(context, FALSE) != FALSE) {
        if (!guard) {
            return;
        }
    }
    if (!guard || g_main_context_acquire(context) == FALSE) {
        return;
    }
    gint priority = 0;
    gint timeout = -1;
    const bool isReady = g_main_context_prepare(context, &priority) != FALSE;
    std::vector<GPollFD> descriptors(8);
    for (;;) {
        const gint count = g_main_context_query(context, priority, &timeout, descriptors.data(),
                                                static_cast<gint>(descriptors.size()));
        const bool fits = count <= static_cast<gint>(descriptors.size());
        descriptors.resize(static_cast<std::size_t>(count));
        if (fits) {
            break;
        }
    }
    g_main_context_release(context);
    for (const GPollFD &descriptor : descriptors) {
        const auto watch = [this, &descriptor](QSocketNotifier::Type type) {
            auto *const notifier = new QSocketNotifier(descriptor.fd, type, this);
            connect(notifier, &QSocketNotifier::activated, this, &GLibContextPump::iterate);
            m_notifiers.push_back(notifier);
        };
        if ((descriptor.events & G_IO_IN) != 0) {
            watch(QSocketNotifier::Read);
        }
        if ((descriptor.events & G_IO_OUT) != 0) {
            watch(QSocketNotifier::Write);
        }
    }
    if (isReady || timeout >= 0) {
        m_timer.start(isReady ? 0 : timeout);
    }
}

} // namespace orvesa
