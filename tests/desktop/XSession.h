#pragma once

// The harness' connection to the X server of one desktop: atoms, properties, selection notifications, and the events
// that let waits go on.
//
// Main thread; owned by the Desktop, used by its parts.

#include "desktop/EventSource.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace orvesa::desktop {

struct FreeDeleter {
    void operator()(void *pointer) const { std::free(pointer); }
};
template <typename T>
using XReply = std::unique_ptr<T, FreeDeleter>;

class XSession final : public QObject, public EventSource {
    Q_OBJECT

public:
    /// Throws DesktopError when the display cannot be opened.
    explicit XSession(const QString &display);
    ~XSession() override;

    [[nodiscard]] xcb_connection_t *connection() const { return m_connection; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    [[nodiscard]] const xcb_screen_t *screen() const { return m_screen; }
    /// A window of ours, never mapped, for selection requests.
    [[nodiscard]] xcb_window_t window() const { return m_window; }

    [[nodiscard]] xcb_atom_t atom(const QByteArray &name);
    [[nodiscard]] QByteArray atomName(xcb_atom_t atom);
    /// Has the window's changes wake waits. Cheap to repeat.
    void watch(xcb_window_t window);
    /// Returns when the server has processed everything sent so far.
    void synchronize();

    struct Property {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray value;
    };
    [[nodiscard]] Property property(xcb_window_t window, xcb_atom_t name) const;
    void sendToRoot(xcb_window_t window, const QByteArray &message, const std::array<quint32, 5> &data);

    [[nodiscard]] int selectionChanges(xcb_atom_t selection) const { return m_selectionChanges.value(selection); }
    /// The answer to our last selection request: absent while it is pending.
    [[nodiscard]] std::optional<xcb_atom_t> selectionAnswer() const { return m_selectionAnswer; }
    void requestSelection(xcb_atom_t selection, xcb_atom_t target, xcb_atom_t property);

    bool takeQueuedEvents() override;

private:
    void handle(const xcb_generic_event_t &event);
    bool takeEvents(xcb_generic_event_t *(*next)(xcb_connection_t *));
    void listen();

    xcb_connection_t *m_connection = nullptr;
    const xcb_screen_t *m_screen = nullptr;
    xcb_window_t m_window = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    quint8 m_firstFixesEvent = 0;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_atom_t, QByteArray> m_atomNames;
    QSet<xcb_window_t> m_watched;
    QHash<xcb_atom_t, int> m_selectionChanges;
    std::optional<xcb_atom_t> m_selectionAnswer;
};

} // namespace orvesa::desktop
