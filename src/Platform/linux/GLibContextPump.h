#pragma once

// Runs GLib's default main context from Qt's event loop while somebody holds it.
//
// Main thread. Qt's usual event dispatcher on Linux is GLib's own loop, and then there is nothing to do; with another
// one the context's descriptors and deadlines are watched here, without polling.

#include <QTimer>

#include <memory>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace orvesa {

class GLibContextPump final : public QObject, public std::enable_shared_from_this<GLibContextPump> {
public:
    /// The one that everybody shares; it ends with its last holder.
    [[nodiscard]] static std::shared_ptr<GLibContextPump> hold();
    ~GLibContextPump() override;

    /// To be called after anything was started on the context from outside of it: what the owning thread itself adds
    /// does not wake the context.
    void look();

private:
    GLibContextPump();
    void iterate();
    void arm();
    void disarm();

    bool m_isNeeded = false;
    QTimer m_timer;
    std::vector<QSocketNotifier *> m_notifiers;
};

} // namespace orvesa
