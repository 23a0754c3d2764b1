#pragma once

// Owns the CLIPBOARD selection and hands its contents to whoever asks, in pieces where they are large.
//
// One thread, in which it is made; it runs on that thread's event loop.

#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11SelectionContents.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

namespace orvesa {

class X11SelectionServer final : public QObject {
public:
    /// A requestor that takes no further piece for so long gets no more.
    static constexpr std::chrono::milliseconds transferBound{10'000};
    /// How long a clipboard manager may take.
    static constexpr std::chrono::milliseconds handOverBound{1'000};
    /// More bytes than this go in pieces of this size.
    static constexpr qsizetype pieceSize = qsizetype{256} * 1024;

    X11SelectionServer();
    ~X11SelectionServer() override;

    /// Takes the selection over. False when that failed; true also when the server has not answered in time, and takes
    /// it as soon as it goes on.
    bool own(X11SelectionContents contents);
    /// Leaves the contents to a clipboard manager where one runs, and calls `done`: at once where there is nothing to
    /// leave, and after the bound at the latest.
    void handOver(std::function<void()> done);

private:
    using Entry = X11SelectionContents::Entry;

    /// One large answer on its way.
    struct Transfer {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        Entry entry;
        qsizetype position = 0;
    };

    bool prepare();
    [[nodiscard]] xcb_timestamp_t serverTime();
    void drop();
    void handle(const xcb_generic_event_t &event);
    void answer(const xcb_selection_request_event_t &request);
    /// Puts the target's data into the property. False when there are none.
    [[nodiscard]] bool provide(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool provideSeveral(xcb_window_t requestor, xcb_atom_t property);
    void provideInPieces(xcb_window_t requestor, xcb_atom_t property, const Entry &entry);
    void setProperty(xcb_window_t window, xcb_atom_t property, const Entry &entry, const char *bytes, qsizetype size);
    void setAtoms(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::vector<xcb_atom_t> &atoms);
    void sendNextPiece(Transfer &transfer);
    void forget(xcb_window_t requestor);
    void restartTransferTimer();
    void finishHandOver();
    [[nodiscard]] std::vector<xcb_atom_t> targets() const;

    X11Connection m_connection;
    X11Connection::HandlerToken m_token = 0;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
    bool m_isOwner = false;
    X11SelectionContents m_contents;
    std::vector<Transfer> m_transfers;
    QTimer m_transferTimer; ///< runs while there are transfers
    QTimer m_handOverTimer;
    std::function<void()> m_handedOver;
};

} // namespace orvesa
