#pragma once

// The program's own connection to the X server, beside Qt's, shared by every adapter that speaks X11.
//
// One thread, the one that makes it. Events are handed to the registered handlers from the event loop: a socket
// notifier wakes for new ones, and those that a round trip has read on the way are dispatched right after it. No timer
// runs. When the server goes away the connection becomes invalid and stays so; every operation then does nothing.
// Every wait for a reply has a bound, connecting has none: what is missing after it may be unknown rather than absent,
// which lateReplies() tells apart, and whenServerAnswers() is the moment to ask again. Nothing here touches the server
// before the first call of isValid() or of an operation.

#include "Platform/linux/X11Reply.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace orvesa {

class X11Connection final : public QObject {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t &event)>;
    using HandlerToken = quint64;

    /// An empty name stands for the DISPLAY variable.
    explicit X11Connection(QByteArray displayName = {}, QObject *parent = nullptr);
    ~X11Connection() override;

    /// Whether a server answers. Connects at the first call.
    [[nodiscard]] bool isValid();
    /// Null while the connection is invalid.
    [[nodiscard]] xcb_connection_t *connection();
    [[nodiscard]] xcb_window_t root();
    [[nodiscard]] int screenNumber();
    /// The server's extension; null when it has none of that name, or does not say so in time. Valid as long as the
    /// connection.
    [[nodiscard]] const xcb_query_extension_reply_t *extension(xcb_extension_t &identity);
    /// The atom of a name, asked for once; XCB_ATOM_NONE without a server, or without a reply in time.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);
    /// Asks for the atoms of names together, so that atom() asks no more. False when they did not come in time.
    [[nodiscard]] bool learnAtoms(std::span<const std::string_view> names);
    /// The names of atoms, asked for together. An empty one where there is none.
    [[nodiscard]] std::vector<QByteArray> atomNames(const std::vector<xcb_atom_t> &atoms);
    /// The first 32-bit values of a property, at most `maximum` of them; empty when it is absent or of another format.
    [[nodiscard]] std::vector<quint32> property(xcb_window_t window, std::string_view name, quint32 maximum = 1);
    /// A property of format 8 as bytes.
    [[nodiscard]] QByteArray textProperty(xcb_window_t window, std::string_view name);

    /// The handler sees every event of this connection until it is removed.
    [[nodiscard]] HandlerToken addEventHandler(EventHandler handler);
    void removeEventHandler(HandlerToken token);

    /// Sends what is buffered and sees to it that events read meanwhile are dispatched from the event loop. Call after
    /// every round trip made directly on connection().
    void settle();

    /// Takes the events that the server had sent before it answered this call, and for which the test holds, out of
    /// what will be dispatched; oldest first.
    [[nodiscard]] std::vector<X11Reply<xcb_generic_event_t>>
    takeEvents(const std::function<bool(const xcb_generic_event_t &event)> &test);

    /// Waits until the server has sent something, or until the deadline.
    void awaitInput(const QDeadlineTimer &deadline);

    /// Waits for a request's reply, at most `replyBound`: a program that stopped while it had the server to itself
    /// would otherwise stop this one as well. `reply(xcb_query_pointer_reply, xcb_query_pointer(...))`, where the
    /// function only names the reply's type. Null on an error or when there is none in time.
    template <typename Reply, typename Cookie>
    [[nodiscard]] X11Reply<Reply> reply(Reply *(*)(xcb_connection_t *, Cookie, xcb_generic_error_t **), Cookie cookie)
    {
        return X11Reply<Reply>(static_cast<Reply *>(awaitReply(cookie.sequence)));
    }

    /// For a request whose reply is no longer of interest.
    void discardReply(unsigned sequence);

    /// How many replies have not come in time so far. Where it has grown over some questions, what they did not bring
    /// is unknown.
    [[nodiscard]] quint64 lateReplies() const { return m_lateReplies; }
    /// Calls from the event loop as soon as the server answers what it is asked here, however long it takes. Not after
    /// the connection's end.
    void whenServerAnswers(std::function<void()> then);

    static constexpr std::chrono::milliseconds replyBound{250};
    /// How often in a row something is asked again when the server answers. One that is late every time is not busy for
    /// a moment but too far away, and would be asked for ever.
    static constexpr int greatestLateAttempts = 5;

private:
    /// What is called when the server has answered that request.
    struct Awaited {
        unsigned sequence = 0;
        std::function<void()> then;
    };

    [[nodiscard]] void *awaitReply(unsigned sequence);
    void collectAnswers();
    void open();
    void close();
    void dispatchEvents();
    void dispatch(const xcb_generic_event_t &event);

    QByteArray m_displayName;
    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    int m_screenNumber = 0;
    bool m_opened = false;
    bool m_dispatchScheduled = false;
    HandlerToken m_lastToken = 0;
    std::map<HandlerToken, EventHandler> m_handlers;
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms;
    std::map<const xcb_extension_t *, const xcb_query_extension_reply_t *> m_extensions;
    quint64 m_lateReplies = 0;
    std::vector<Awaited> m_awaited;           ///< in the order in which they were asked
    std::vector<std::function<void()>> m_due; ///< answered, and not called yet
    std::vector<X11Reply<xcb_generic_event_t>> m_readEvents;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace orvesa
