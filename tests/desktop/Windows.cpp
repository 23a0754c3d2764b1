#include "desktop/Windows.h"

#include "desktop/XSession.h"

#include <xcb/res.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstring>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 fromPager = 2; // source indication of a window manager request

} // namespace

Windows::Windows(XSession &session) : m_session(session) {}

xcb_window_t Windows::root() const
{
    return m_session.root();
}

std::vector<xcb_window_t> Windows::children(xcb_window_t window) const
{
    m_session.watch(window);
    const XReply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(m_session.connection(), xcb_query_tree(m_session.connection(), window), nullptr));
    if (!reply)
        return {};
    const xcb_window_t *first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

bool Windows::isMapped(xcb_window_t window) const
{
    m_session.watch(window);
    const XReply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        m_session.connection(), xcb_get_window_attributes(m_session.connection(), window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE && reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

xcb_window_t Windows::client(xcb_window_t topLevel) const
{
    const xcb_atom_t state = m_session.atom("WM_STATE");
    std::vector<xcb_window_t> level{topLevel};
    for (int depth = 0; depth < 3; ++depth) {
        std::vector<xcb_window_t> next;
        for (const xcb_window_t window : level) {
            m_session.watch(window);
            if (m_session.property(window, state).type != XCB_ATOM_NONE)
                return window;
            for (const xcb_window_t child : children(window))
                next.push_back(child);
        }
        level = std::move(next);
    }
    return topLevel;
}

bool Windows::matches(xcb_window_t window, const WindowMatch &match) const
{
    return (!match.pid || pid(window) == *match.pid) && (!match.title || title(window).contains(*match.title)) &&
           (!match.className || className(window).split(u'\n').contains(*match.className));
}

std::vector<xcb_window_t> Windows::mapped(const WindowMatch &match) const
{
    std::vector<xcb_window_t> found;
    for (const xcb_window_t child : children(root())) {
        if (!isMapped(child))
            continue;
        const xcb_window_t window = client(child);
        if (isMapped(window) && matches(window, match))
            found.push_back(window);
    }
    return found;
}

xcb_window_t Windows::awaitWindow(const WindowMatch &match, std::chrono::milliseconds deadline)
{
    std::vector<xcb_window_t> found;
    const QString what = u"a window%1%2"_s.arg(match.title ? u" titled '%1'"_s.arg(*match.title) : QString(),
                                               match.pid ? u" of process %1"_s.arg(*match.pid) : QString());
    waitUntil([&] { return !(found = mapped(match)).empty(); }, what, deadline);
    return found.front();
}

xcb_window_t Windows::embeddedBelow(xcb_window_t window, qint64 processIdentifier) const
{
    for (const xcb_window_t child : children(window)) {
        if (!property(child, "_XEMBED_INFO").isEmpty() && isMapped(child) && pid(child) == processIdentifier)
            return child;
        if (const xcb_window_t found = embeddedBelow(child, processIdentifier); found != XCB_NONE)
            return found;
    }
    return XCB_NONE;
}

xcb_window_t Windows::awaitTrayIcon(qint64 processIdentifier, std::chrono::milliseconds deadline)
{
    xcb_window_t found = XCB_NONE;
    waitUntil([&] { return (found = embeddedBelow(root(), processIdentifier)) != XCB_NONE; },
              u"a tray icon of process %1"_s.arg(processIdentifier), deadline);
    return found;
}

bool Windows::hasTrayIcon(qint64 processIdentifier) const
{
    return embeddedBelow(root(), processIdentifier) != XCB_NONE;
}

void Windows::awaitNoWindow(const WindowMatch &match, std::chrono::milliseconds deadline)
{
    waitUntil([&] { return mapped(match).empty(); }, u"the window to go"_s, deadline);
}

void Windows::awaitActive(xcb_window_t window, std::chrono::milliseconds deadline)
{
    waitUntil([&] { return active() == window && inputFocus() == window; }, u"the window to be active"_s, deadline);
}

xcb_window_t Windows::active() const
{
    const std::vector<quint32> value = cardinals(root(), "_NET_ACTIVE_WINDOW");
    return value.empty() ? XCB_NONE : value.front();
}

xcb_window_t Windows::rawInputFocus() const
{
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_session.connection(), xcb_get_input_focus(m_session.connection()), nullptr));
    return reply ? reply->focus : XCB_NONE;
}

xcb_window_t Windows::childOfRoot(xcb_window_t window) const
{
    for (xcb_window_t current = window; current > XCB_INPUT_FOCUS_POINTER_ROOT;) {
        const XReply<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(m_session.connection(), xcb_query_tree(m_session.connection(), current), nullptr));
        if (!reply || current == root())
            break;
        if (reply->parent == root())
            return current;
        current = reply->parent;
    }
    return XCB_NONE;
}

xcb_window_t Windows::inputFocus() const
{
    const xcb_window_t focus = rawInputFocus();
    const xcb_window_t top = childOfRoot(focus);
    return top == XCB_NONE ? focus : client(top);
}

qint64 Windows::pid(xcb_window_t window) const
{
    if (const std::vector<quint32> value = cardinals(window, "_NET_WM_PID"); !value.empty())
        return value.front();
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XReply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        m_session.connection(), xcb_res_query_client_ids(m_session.connection(), 1, &wanted), nullptr));
    if (!reply)
        return 0;
    const xcb_res_client_id_value_iterator_t first = xcb_res_query_client_ids_ids_iterator(reply.get());
    return first.rem > 0 && first.data->length >= sizeof(quint32) ? *xcb_res_client_id_value_value(first.data) : 0;
}

QString Windows::title(xcb_window_t window) const
{
    const QByteArray name = property(window, "_NET_WM_NAME");
    return QString::fromUtf8(name.isEmpty() ? property(window, "WM_NAME") : name);
}

QString Windows::className(xcb_window_t window) const
{
    return QString::fromUtf8(property(window, "WM_CLASS")).replace(QChar(0), u'\n').trimmed();
}

QRect Windows::geometry(xcb_window_t window) const
{
    m_session.watch(window);
    const XReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(m_session.connection(), xcb_get_geometry(m_session.connection(), window), nullptr));
    const XReply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
        m_session.connection(), xcb_translate_coordinates(m_session.connection(), window, root(), 0, 0), nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

QRect Windows::frameGeometry(xcb_window_t window) const
{
    const std::vector<quint32> extents = cardinals(window, "_NET_FRAME_EXTENTS");
    const QRect inner = geometry(window);
    if (extents.size() != 4 || inner.isNull())
        return inner;
    return inner.adjusted(-static_cast<int>(extents[0]), -static_cast<int>(extents[2]), static_cast<int>(extents[1]),
                          static_cast<int>(extents[3]));
}

bool Windows::isAbove(xcb_window_t upper, xcb_window_t lower) const
{
    const std::vector<xcb_window_t> order = children(root());
    const auto place = [&](xcb_window_t window) { return std::ranges::find(order, childOfRoot(window)); };
    return place(upper) != order.end() && place(lower) != order.end() && place(upper) > place(lower);
}

QByteArray Windows::property(xcb_window_t window, const QByteArray &name) const
{
    m_session.watch(window);
    return m_session.property(window, m_session.atom(name)).value;
}

std::vector<quint32> Windows::cardinals(xcb_window_t window, const QByteArray &name) const
{
    const QByteArray bytes = property(window, name);
    std::vector<quint32> values(static_cast<std::size_t>(bytes.size()) / sizeof(quint32));
    if (!values.empty())
        std::memcpy(values.data(), bytes.constData(), values.size() * sizeof(quint32));
    return values;
}

QList<QByteArray> Windows::atoms(xcb_window_t window, const QByteArray &name) const
{
    QList<QByteArray> names;
    for (const quint32 atom : cardinals(window, name))
        names.append(m_session.atomName(atom));
    return names;
}

void Windows::focus(xcb_window_t window, std::chrono::milliseconds deadline)
{
    m_session.sendToRoot(window, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME, 0, 0, 0});
    awaitActive(window, deadline);
}

void Windows::close(xcb_window_t window)
{
    m_session.sendToRoot(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromPager, 0, 0, 0});
}

void Windows::moveResize(xcb_window_t window, const QRect &geometry)
{
    const std::array<quint32, 4> values{static_cast<quint32>(geometry.x()), static_cast<quint32>(geometry.y()),
                                        static_cast<quint32>(geometry.width()),
                                        static_cast<quint32>(geometry.height())};
    xcb_configure_window(m_session.connection(), window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    m_session.synchronize();
}

QImage Windows::picture() const
{
    return picture(QRect(0, 0, m_session.screen()->width_in_pixels, m_session.screen()->height_in_pixels));
}

QImage Windows::picture(const QRect &area) const
{
    const QRect inside = area & QRect(0, 0, m_session.screen()->width_in_pixels, m_session.screen()->height_in_pixels);
    const XReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        m_session.connection(),
        xcb_get_image(m_session.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<qint16>(inside.x()),
                      static_cast<qint16>(inside.y()), static_cast<quint16>(inside.width()),
                      static_cast<quint16>(inside.height()), ~quint32{0}),
        nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < inside.width() * inside.height() * 4)
        throw DesktopError(u"the screen could not be read"_s);
    constexpr qsizetype bytesPerPixel = 4;
    return QImage(xcb_get_image_data(reply.get()), inside.width(), inside.height(), inside.width() * bytesPerPixel,
                  QImage::Format_RGB32)
        .copy();
}

void Windows::save(const QImage &image, const QString &path) const
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (!image.save(path, "PNG"))
        throw DesktopError(u"the screenshot could not be written to %1"_s.arg(path));
}

void Windows::screenshot(const QString &path) const
{
    save(picture(), path);
}

void Windows::screenshot(const QString &path, xcb_window_t window) const
{
    save(picture(frameGeometry(window)), path);
}

} // namespace orvesa::desktop
