#pragma once

// One conversion of a selection: its owner is asked for one target and hands the bytes over, at once or in pieces.
//
// One thread, the connection's. It has a window of its own, so that an owner that answers too late answers nobody.
// Whoever makes it hands it the connection's events and decides how long to wait.

#include "Platform/linux/X11Connection.h"

#include <QByteArray>

namespace orvesa {

class X11SelectionConversion final {
public:
    enum class Outcome {
        pending,
        data,
        refused, ///< the owner has no such target, or there is no owner
        tooLarge,
    };

    struct Data {
        QByteArray bytes;
        xcb_atom_t type = XCB_ATOM_NONE;
        quint8 format = 0; ///< bits of one value
    };

    /// Asks for it. More than so many bytes are not accepted. The connection must outlive this object.
    X11SelectionConversion(X11Connection &connection, xcb_atom_t selection, xcb_atom_t target, qsizetype mostBytes);
    ~X11SelectionConversion();
    Q_DISABLE_COPY_MOVE(X11SelectionConversion)

    /// Whether the event belongs to it.
    [[nodiscard]] bool concerns(const xcb_generic_event_t &event) const;
    /// Takes an event that does.
    void handle(const xcb_generic_event_t &event);

    [[nodiscard]] Outcome outcome() const { return m_outcome; }
    [[nodiscard]] const Data &data() const { return m_data; }
    /// Grows with everything that the owner does.
    [[nodiscard]] quint64 progress() const { return m_progress; }

private:
    void takeAnswer(xcb_atom_t property);
    void takePiece();
    /// Adds what the property holds to the bytes and deletes it. False when it could not be read.
    [[nodiscard]] bool takeProperty();

    X11Connection &m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_property;
    qsizetype m_mostBytes;
    bool m_isInPieces = false;
    qsizetype m_lastPiece = 0;
    Outcome m_outcome = Outcome::pending;
    Data m_data;
    quint64 m_progress = 0;
};

} // namespace orvesa
