#include "Platform/linux/X11Connection.h"

#include <QMetaObject>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <utility>

#include <poll.h>
#include <xcb/xcbext.h>

namespace orvesa {

X11Connection::X11Connection(QByteArray displayName, QObject *parent)
    : QObject(parent), m_displayName(std::move(displayName))
{
}

X11Connection::~X11Connection()
{
    close();
}

void X11Connection::open()
{
    m_opened = true;
    int screenNumber = 0;
    xcb_connection_t *const connection =
        xcb_connect(m_displayName.isEmpty() ? nullptr : m_displayName.constData(), &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int skipped = 0; skipped < screenNumber && screens.rem > 1; ++skipped) {
        xcb_screen_next(&screens);
    }
    m_connection = connection;
    m_screenNumber = screenNumber;
    m_root = screens.data->root;
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { dispatchEvents(); });
}

void X11Connection::close()
{
    if (m_connection == nullptr) {
        return;
    }
    // The notifier goes first: it must not outlive its descriptor. It may be the one that is being activated.
    m_notifier->setEnabled(false);
    m_notifier.release()->deleteLater();
    xcb_disconnect(m_connection);
    m_connection = nullptr;
    m_root = XCB_WINDOW_NONE;
    m_readEvents.clear();
    m_extensions.clear();
    m_awaited.clear();
    m_due.clear();
}

bool X11Connection::isValid()
{
    if (!m_opened) {
        open();
    }
    if (m_connection != nullptr && xcb_connection_has_error(m_connection) != 0) {
        close();
    }
    return m_connection != nullptr;
}

xcb_connection_t *X11Connection::connection()
{
    return isValid() ? m_connection : nullptr;
}

xcb_window_t X11Connection::root()
{
    return isValid() ? m_root : xcb_window_t{XCB_WINDOW_NONE};
}

int X11Connection::screenNumber()
{
    return isValid() ? m_screenNumber : 0;
}

const xcb_query_extension_reply_t *X11Connection::extension(xcb_extension_t &identity)
{
    if (!isValid()) {
        return nullptr;
    }
    if (const auto known = m_extensions.find(&identity); known != m_extensions.end()) {
        return known->second;
    }
    // The library waits for this one without a bound. The server answers in order: with the reply to a later question,
    // this one's is there too.
    xcb_prefetch_extension_data(m_connection, &identity);
    const auto later = reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection));
    if (!later || !isValid()) {
        return nullptr;
    }
    const xcb_query_extension_reply_t *const found = xcb_get_extension_data(m_connection, &identity);
    settle();
    const xcb_query_extension_reply_t *const present = found != nullptr && found->present != 0 ? found : nullptr;
    m_extensions.emplace(&identity, present);
    return present;
}

xcb_atom_t X11Connection::atom(std::string_view name)
{
    if (const auto known = m_atoms.find(name); known != m_atoms.end()) {
        return known->second;
    }
    if (!isValid()) {
        return XCB_ATOM_NONE;
    }
    const auto answer =
        reply(xcb_intern_atom_reply, xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.data()));
    if (!answer) {
        return XCB_ATOM_NONE;
    }
    m_atoms.emplace(name, answer->atom);
    return answer->atom;
}

bool X11Connection::learnAtoms(std::span<const std::string_view> names)
{
    if (!isValid()) {
        return false;
    }
    std::vector<std::pair<std::string_view, xcb_intern_atom_cookie_t>> questions;
    for (const std::string_view name : names) {
        if (!m_atoms.contains(name)) {
            questions.emplace_back(name,
                                   xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.data()));
        }
    }
    bool areKnown = true;
    for (const auto &[name, question] : questions) {
        if (!areKnown) {
            discardReply(question.sequence);
        } else if (const auto answer = reply(xcb_intern_atom_reply, question)) {
            m_atoms.emplace(name, answer->atom);
        } else {
            areKnown = false;
        }
    }
    return areKnown;
}

std::vector<QByteArray> X11Connection::atomNames(const std::vector<xcb_atom_t> &atoms)
{
    std::vector<QByteArray> names(atoms.size());
    if (!isValid()) {
        return names;
    }
    std::vector<xcb_get_atom_name_cookie_t> questions;
    questions.reserve(atoms.size());
    for (const xcb_atom_t wanted : atoms) {
        questions.push_back(xcb_get_atom_name(m_connection, wanted));
    }
    const quint64 lateBefore = m_lateReplies;
    for (std::size_t index = 0; index < atoms.size(); ++index) {
        if (m_lateReplies != lateBefore) { // a wait for each of them would take its sum
            discardReply(questions[index].sequence);
        } else if (const auto answer = reply(xcb_get_atom_name_reply, questions[index])) {
            names[index] =
                QByteArray(xcb_get_atom_name_name(answer.get()), xcb_get_atom_name_name_length(answer.get()));
            m_atoms.emplace(names[index].toStdString(), atoms[index]);
        }
    }
    return names;
}

std::vector<quint32> X11Connection::property(xcb_window_t window, std::string_view name, quint32 maximum)
{
    const xcb_atom_t wanted = atom(name);
    if (wanted == XCB_ATOM_NONE) {
        return {};
    }
    const auto answer =
        reply(xcb_get_property_reply, xcb_get_property(m_connection, 0, window, wanted, XCB_ATOM_ANY, 0, maximum));
    if (!answer || answer->format != 32) {
        return {};
    }
    const auto *const values = static_cast<const quint32 *>(xcb_get_property_value(answer.get()));
    return {values, values + answer->value_len};
}

QByteArray X11Connection::textProperty(xcb_window_t window, std::string_view name)
{
    constexpr quint32 maximumWords = 1024;
    const xcb_atom_t wanted = atom(name);
    if (wanted == XCB_ATOM_NONE) {
        return {};
    }
    const auto answer =
        reply(xcb_get_property_reply, xcb_get_property(m_connection, 0, window, wanted, XCB_ATOM_ANY, 0, maximumWords));
    if (!answer || answer->format != 8) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(answer.get())),
            xcb_get_property_value_length(answer.get())};
}

void *X11Connection::awaitReply(unsigned sequence)
{
    if (!isValid()) {
        return nullptr;
    }
    xcb_flush(m_connection);
    const QDeadlineTimer deadline(replyBound, Qt::PreciseTimer);
    void *answer = nullptr;
    xcb_generic_error_t *error = nullptr;
    while (xcb_poll_for_reply(m_connection, sequence, &answer, &error) == 0) {
        pollfd descriptor{.fd = xcb_get_file_descriptor(m_connection), .events = POLLIN, .revents = 0};
        const int ready = ::poll(&descriptor, 1, static_cast<int>(deadline.remainingTime()));
        if (ready == 0 || (ready < 0 && errno != EINTR)) {
            xcb_discard_reply(m_connection, sequence);
            ++m_lateReplies;
            break;
        }
    }
    std::free(error);
    settle();
    return answer;
}

void X11Connection::discardReply(unsigned sequence)
{
    if (isValid()) {
        xcb_discard_reply(m_connection, sequence);
    }
}

void X11Connection::whenServerAnswers(std::function<void()> then)
{
    if (isValid()) {
        m_awaited.push_back({xcb_get_input_focus(m_connection).sequence, std::move(then)});
        settle();
    }
}

void X11Connection::collectAnswers()
{
    void *answer = nullptr;
    xcb_generic_error_t *error = nullptr;
    while (!m_awaited.empty() && xcb_poll_for_reply(m_connection, m_awaited.front().sequence, &answer, &error) != 0) {
        std::free(std::exchange(answer, nullptr));
        std::free(std::exchange(error, nullptr));
        m_due.push_back(std::move(m_awaited.front().then));
        m_awaited.erase(m_awaited.begin());
    }
}

void X11Connection::awaitInput(const QDeadlineTimer &deadline)
{
    if (!isValid()) {
        return;
    }
    xcb_flush(m_connection);
    pollfd descriptor{.fd = xcb_get_file_descriptor(m_connection), .events = POLLIN, .revents = 0};
    (void)::poll(&descriptor, 1, static_cast<int>(deadline.remainingTime()));
}

X11Connection::HandlerToken X11Connection::addEventHandler(EventHandler handler)
{
    m_handlers.emplace(++m_lastToken, std::move(handler));
    return m_lastToken;
}

void X11Connection::removeEventHandler(HandlerToken token)
{
    m_handlers.erase(token);
}

void X11Connection::settle()
{
    if (!isValid()) {
        return;
    }
    xcb_flush(m_connection);
    // A round trip reads the socket empty, so the notifier stays silent for what came along with the reply.
    collectAnswers();
    while (xcb_generic_event_t *const event = xcb_poll_for_queued_event(m_connection)) {
        m_readEvents.emplace_back(event);
    }
    if ((!m_readEvents.empty() || !m_due.empty()) && !m_dispatchScheduled) {
        m_dispatchScheduled = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_dispatchScheduled = false;
                dispatchEvents();
            },
            Qt::QueuedConnection);
    }
}

std::vector<X11Reply<xcb_generic_event_t>>
X11Connection::takeEvents(const std::function<bool(const xcb_generic_event_t &event)> &test)
{
    std::vector<X11Reply<xcb_generic_event_t>> taken;
    if (!isValid()) {
        return taken;
    }
    (void)reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection)); // reads everything sent before it
    const auto rest = std::stable_partition(m_readEvents.begin(), m_readEvents.end(),
                                            [&test](const auto &event) { return !test(*event); });
    std::move(rest, m_readEvents.end(), std::back_inserter(taken));
    m_readEvents.erase(rest, m_readEvents.end());
    return taken;
}

void X11Connection::dispatchEvents()
{
    if (!isValid()) {
        return;
    }
    while (xcb_generic_event_t *const event = xcb_poll_for_event(m_connection)) {
        m_readEvents.emplace_back(event);
    }
    collectAnswers();
    const auto events = std::exchange(m_readEvents, {});
    const auto due = std::exchange(m_due, {});
    for (const auto &event : events) {
        dispatch(*event);
    }
    for (const auto &then : due) {
        then();
    }
    // A handler may have made round trips; and after the server's end the descriptor would stay readable for ever.
    settle();
}

void X11Connection::dispatch(const xcb_generic_event_t &event)
{
    std::vector<HandlerToken> tokens;
    tokens.reserve(m_handlers.size());
    for (const auto &[token, handler] : m_handlers) {
        tokens.push_back(token);
    }
    for (const HandlerToken token : tokens) {
        // Copied: the handler may remove itself.
        if (const auto found = m_handlers.find(token); found != m_handlers.end()) {
            const EventHandler handler = found->second;
            handler(event);
        }
    }
}

} // namespace orvesa
