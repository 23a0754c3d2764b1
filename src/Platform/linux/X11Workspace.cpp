#include "Platform/linux/X11Workspace.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QGuiApplication>

#include <xcb/res.h>

namespace orvesa {

X11Workspace::X11Workspace(X11Connection &connection) : m_connection(connection) {}

std::optional<qint64> X11Workspace::frontmostApplication() const
{
    if (!m_connection.isValid()) {
        return std::nullopt;
    }
    const auto active = m_connection.property(m_connection.root(), "_NET_ACTIVE_WINDOW");
    if (active.empty() || active.front() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    if (const auto process = clientProcess(active.front())) {
        return process;
    }
    const auto stated = m_connection.property(active.front(), "_NET_WM_PID");
    if (stated.empty() || stated.front() == 0) {
        return std::nullopt;
    }
    return stated.front();
}

std::optional<qint64> X11Workspace::clientProcess(xcb_window_t window) const
{
    // The server knows who is at the other end of the window's connection; the window's own statement may be missing.
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(raw, &xcb_res_id);
    m_connection.settle();
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto answer = m_connection.reply(xcb_res_query_client_ids_reply, xcb_res_query_client_ids(raw, 1, &wanted));
    if (!answer) {
        return std::nullopt;
    }
    for (auto id = xcb_res_query_client_ids_ids_iterator(answer.get()); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
            xcb_res_client_id_value_value_length(id.data) > 0) {
            if (const quint32 process = *xcb_res_client_id_value_value(id.data); process != 0) {
                return process;
            }
        }
    }
    return std::nullopt;
}

bool X11Workspace::open(const QUrl &url)
{
    if (!url.isValid() || qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr) {
        return false;
    }
    return QDesktopServices::openUrl(url);
}

} // namespace orvesa
