#pragma once

// What a selection's owner offers, in the terms of the X server. Value type, any thread.

#include <QByteArray>

#include <vector>

#include <xcb/xcb.h>

namespace orvesa {

struct X11SelectionContents {
    enum class Kind {
        data,
        targets,   ///< the list of targets itself
        timestamp, ///< since when the selection is owned
        multiple,  ///< several targets in one request
        handOver,  ///< the owner leaves its contents to a clipboard manager when it ends
    };

    struct Entry {
        xcb_atom_t target = XCB_ATOM_NONE;
        Kind kind = Kind::data;
        xcb_atom_t type = XCB_ATOM_NONE;
        quint8 format = 8; ///< bits of one value
        QByteArray bytes{};
    };

    enum class Secrecy { ordinary, secret };

    std::vector<Entry> entries{}; ///< in the order in which they are offered
    /// Secret contents are not handed over to anybody who would keep them.
    Secrecy secrecy = Secrecy::ordinary;
};

} // namespace orvesa
