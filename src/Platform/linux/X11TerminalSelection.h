#pragma once

// What is selected in a terminal that tells nobody: the PRIMARY selection, where the terminal itself owns it.
//
// Main thread. PRIMARY outlives what it was made from in many programs, so it is asked for nowhere else. These
// terminals keep it too when a click takes their highlight away; so while one of them owns it, clicks are watched, and
// a single one in its window ends the selection.

#include "Platform/linux/X11SelectionReader.h"

#include <QPoint>
#include <QString>

#include <memory>
#include <optional>

namespace orvesa {

class X11TerminalSelection final {
public:
    /// The connection must outlive this object. It must be one on which nobody else watches PRIMARY or buttons.
    explicit X11TerminalSelection(X11Connection &connection);
    ~X11TerminalSelection();
    Q_DISABLE_COPY_MOVE(X11TerminalSelection)

    /// Begins to follow what is selected where; at once, or as soon as the server answers. Before that, a selection
    /// counts for as long as it is owned.
    void watch();

    /// Whether the process' window has the keyboard and is that of a known terminal.
    [[nodiscard]] bool isTerminal(qint64 processIdentifier);
    /// Nothing when another program or another window of this one owns PRIMARY, its highlight is gone, or the terminal
    /// does not hand it over within 250 ms.
    [[nodiscard]] std::optional<QString> text(qint64 processIdentifier);

private:
    [[nodiscard]] bool concerns(const xcb_generic_event_t &event) const;
    void handle(const xcb_generic_event_t &event);
    /// Whether the owner, if it belongs to a window, belongs to the one with the keyboard.
    [[nodiscard]] bool isInFront(xcb_window_t owner);
    /// Looks who owns PRIMARY, now or as soon as the server answers.
    void findOwner();
    void findOwnerLater();
    /// PRIMARY has a new owner, or its owner has taken it anew, at that time.
    void noteOwner(xcb_window_t owner, xcb_timestamp_t since);
    [[nodiscard]] std::optional<QPoint> pointer();
    void notePress(xcb_timestamp_t time);
    void noteRelease(xcb_timestamp_t time);
    enum class Listening { off, on };
    void listenForClicks(Listening listening);

    X11Connection &m_connection;
    X11SelectionReader m_reader;
    X11Connection::HandlerToken m_token = 0;
    quint8 m_fixesEvent = 0;
    quint8 m_inputOpcode = 0;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
    xcb_window_t m_terminal = XCB_WINDOW_NONE; ///< the owner's named window
    bool m_isListening = false;                ///< only while a terminal owns PRIMARY
    bool m_isOver = false;                     ///< a click has taken the highlight away
    std::optional<QPoint> m_pressedAt;         ///< in the terminal
    QPoint m_lastPress;                        ///< in the terminal, at the time below
    xcb_timestamp_t m_pressTime = 0;
    xcb_timestamp_t m_releaseTime = 0;
    bool m_isRepeated = false; ///< the press came soon after the one before
    int m_lateLooks = 0;       ///< in a row
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace orvesa
