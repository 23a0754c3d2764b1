#include "Platform/linux/X11WindowOwner.h"

#include <QList>

#include <xcb/res.h>

namespace orvesa::X11WindowOwner {

namespace {

constexpr int deepestTree = 32;

std::optional<qint64> clientProcess(X11Connection &connection, xcb_window_t window)
{
    if (connection.extension(xcb_res_id) == nullptr) {
        return std::nullopt;
    }
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto answer =
        connection.reply(xcb_res_query_client_ids_reply, xcb_res_query_client_ids(connection.connection(), 1, &wanted));
    if (!answer) {
        return std::nullopt;
    }
    for (auto id = xcb_res_query_client_ids_ids_iterator(answer.get()); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
            xcb_res_client_id_value_value_length(id.data) > 0) {
            if (const quint32 found = *xcb_res_client_id_value_value(id.data); found != 0) {
                return found;
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<qint64> process(X11Connection &connection, xcb_window_t window)
{
    // The server knows who is at the other end of the window's connection; the window's own statement may be missing.
    if (!connection.isValid() || window == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    if (const auto client = clientProcess(connection, window)) {
        return client;
    }
    const auto stated = connection.property(window, "_NET_WM_PID");
    if (stated.empty() || stated.front() == 0) {
        return std::nullopt;
    }
    return stated.front();
}

xcb_window_t underPointer(X11Connection &connection)
{
    xcb_window_t window = connection.root();
    for (int level = 0; level < deepestTree; ++level) {
        const auto pointer =
            connection.reply(xcb_query_pointer_reply, xcb_query_pointer(connection.connection(), window));
        if (!pointer || pointer->child == XCB_WINDOW_NONE) {
            break;
        }
        window = pointer->child;
    }
    return window;
}

std::optional<Program> program(X11Connection &connection, xcb_window_t window)
{
    for (int level = 0; level < deepestTree && window != XCB_WINDOW_NONE && window != connection.root(); ++level) {
        const QByteArray names = connection.textProperty(window, "WM_CLASS");
        if (!names.isEmpty()) {
            const QList<QByteArray> parts = names.split('\0');
            return Program{window, parts.value(0), parts.value(1)};
        }
        const auto tree = connection.reply(xcb_query_tree_reply, xcb_query_tree(connection.connection(), window));
        window = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
    }
    return std::nullopt;
}

std::optional<Program> withKeyboard(X11Connection &connection)
{
    if (!connection.isValid()) {
        return std::nullopt;
    }
    const auto focus = connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection.connection()));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE) {
        return std::nullopt;
    }
    // The focus may be on a window within the one that carries the name.
    return program(connection, focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT ? underPointer(connection) : focus->focus);
}

} // namespace orvesa::X11WindowOwner
