#pragma once

// Reads selections of other programs, which may answer late, in pieces, or never.
//
// Main thread. Destroying it while a conversion is awaited leaves that coroutine suspended for ever.

#include "Platform/linux/X11SelectionConversion.h"

#include <QCoroTask>
#include <QDeadlineTimer>

#include <chrono>
#include <optional>

namespace orvesa {

class X11SelectionReader final {
public:
    /// How long an owner may do nothing at all.
    static constexpr std::chrono::milliseconds silenceBound{1000};

    struct Answer {
        /// Pending for an owner that did not answer in time.
        X11SelectionConversion::Outcome outcome = X11SelectionConversion::Outcome::pending;
        X11SelectionConversion::Data data;
    };

    /// The connection must outlive this object.
    explicit X11SelectionReader(X11Connection &connection);

    /// Asks the owner and suspends until it has handed over everything, has been silent for too long, or the deadline
    /// is past.
    [[nodiscard]] QCoro::Task<Answer> convert(xcb_atom_t selection, xcb_atom_t target, qsizetype mostBytes,
                                              QDeadlineTimer deadline);
    /// The same without suspending; at most 250 ms.
    [[nodiscard]] Answer convertNow(xcb_atom_t selection, xcb_atom_t target, qsizetype mostBytes);
    /// XCB_WINDOW_NONE when nobody owns it.
    [[nodiscard]] xcb_window_t owner(xcb_atom_t selection);

private:
    X11Connection &m_connection;
};

} // namespace orvesa
