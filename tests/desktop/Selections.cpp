#include "desktop/Selections.h"

#include "desktop/XSession.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

QByteArray atomNameOf(Selection selection)
{
    return selection == Selection::primary ? QByteArrayLiteral("PRIMARY") : QByteArrayLiteral("CLIPBOARD");
}

} // namespace

Selections::Selections(XSession &session) : m_session(session) {}

xcb_window_t Selections::owner(Selection selection) const
{
    return owner(atomNameOf(selection));
}

xcb_window_t Selections::owner(const QByteArray &selection) const
{
    const xcb_atom_t atom = m_session.atom(selection);
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_session.connection(), xcb_get_selection_owner(m_session.connection(), atom), nullptr));
    return reply ? reply->owner : XCB_NONE;
}

int Selections::changes(Selection selection) const
{
    m_session.synchronize();
    m_session.takeQueuedEvents();
    return m_session.selectionChanges(m_session.atom(atomNameOf(selection)));
}

std::optional<QString> Selections::text(Selection selection, std::chrono::milliseconds deadline)
{
    const xcb_atom_t transfer = m_session.atom("ORVESA_DESKTOP_TRANSFER");
    m_session.requestSelection(m_session.atom(atomNameOf(selection)), m_session.atom("UTF8_STRING"), transfer);
    waitUntil([this] { return m_session.selectionAnswer().has_value(); }, u"the selection's owner to answer"_s,
              deadline);
    if (m_session.selectionAnswer() == XCB_NONE)
        return std::nullopt;
    XSession::Property part = m_session.property(m_session.window(), transfer);
    if (part.type != m_session.atom("INCR"))
        return QString::fromUtf8(part.value);
    // In pieces: each is asked for by deleting the one before, an empty one ends them.
    QByteArray whole;
    do {
        xcb_delete_property(m_session.connection(), m_session.window(), transfer);
        xcb_flush(m_session.connection());
        waitUntil(
            [&] {
                part = m_session.property(m_session.window(), transfer);
                return part.type != XCB_ATOM_NONE;
            },
            u"the next piece of the selection"_s, deadline);
        whole += part.value;
    } while (!part.value.isEmpty());
    xcb_delete_property(m_session.connection(), m_session.window(), transfer);
    return QString::fromUtf8(whole);
}

void Selections::awaitText(Selection selection, const QString &text, std::chrono::milliseconds deadline)
{
    int seen = -1;
    waitUntil(
        [&] {
            const int now = changes(selection);
            if (now == seen)
                return false;
            seen = now;
            return owner(selection) != XCB_NONE && this->text(selection) == text;
        },
        u"the selection to hold the expected text"_s, deadline);
}

} // namespace orvesa::desktop
