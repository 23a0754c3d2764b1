#pragma once

// Runs GLib's default main context from Qt's event loop while it lives.
//
// Main thread. Qt's usual event dispatcher on Linux is GLib's own loop, and then there is nothing to do; with another one the
// context's descriptors and deadlines are watched here, without polling.

#include <QTimer>

#include <memory>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace orvesa {

class GLibContextPump final : public QObject {
public:
    GLibContextPump();
    ~GLibContextPump() override;

private:
    void iterate();
    void disarm();

    QTimer m_timer;
    std::vector<QSocketNotifier *> m_notifiers;
};

} // namespace orvesa
