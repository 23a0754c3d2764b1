#include "Platform/linux/X11Struts.h"

#include <algorithm>
#include <array>

namespace orvesa::X11Struts {

namespace {

constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top, Strut::Edge::bottom};
constexpr quint32 partialStrutLength = 12;

/// Four widths, then for each of them the first and the last pixel.
void append(std::vector<Strut> &struts, const quint32 *values)
{
    for (std::size_t edge = 0; edge < edges.size(); ++edge) {
        const Strut strut{.edge = edges[edge],
                          .width = static_cast<int>(values[edge]),
                          .start = static_cast<int>(values[4 + 2 * edge]),
                          .end = static_cast<int>(values[5 + 2 * edge])};
        if (strut.width > 0) {
            struts.push_back(strut);
        }
    }
}

bool isBeside(const Strut &strut, int first, int last)
{
    return strut.start <= last && strut.end >= first;
}

} // namespace

std::vector<Strut> read(X11Connection &connection)
{
    constexpr quint32 mostWindows = 4096;
    std::vector<Strut> struts;
    if (!connection.isValid()) {
        return struts;
    }
    const auto windows = connection.property(connection.root(), "_NET_CLIENT_LIST", mostWindows);
    const xcb_atom_t partial = connection.atom("_NET_WM_STRUT_PARTIAL");
    std::vector<xcb_get_property_cookie_t> cookies;
    cookies.reserve(windows.size());
    for (const quint32 window : windows) {
        cookies.push_back(xcb_get_property(connection.connection(), 0, window, partial, XCB_ATOM_CARDINAL, 0,
                                           partialStrutLength));
    }
    for (const xcb_get_property_cookie_t cookie : cookies) {
        const auto answer = connection.reply(xcb_get_property_reply, cookie);
        if (answer && answer->format == 32 && answer->value_len >= partialStrutLength) {
            append(struts, static_cast<const quint32 *>(xcb_get_property_value(answer.get())));
        }
    }
    return struts;
}

QRect freePart(const QRect &monitor, const QRect &root, const std::vector<Strut> &struts)
{
    QRect rest = monitor;
    for (const Strut &strut : struts) {
        const bool isVertical = strut.edge == Strut::Edge::left || strut.edge == Strut::Edge::right;
        if (isVertical ? !isBeside(strut, monitor.top(), monitor.bottom())
                       : !isBeside(strut, monitor.left(), monitor.right())) {
            continue;
        }
        QRect cut = rest;
        switch (strut.edge) {
        case Strut::Edge::left:
            cut.setLeft(std::max(rest.left(), root.left() + strut.width));
            break;
        case Strut::Edge::right:
            cut.setRight(std::min(rest.right(), root.right() - strut.width));
            break;
        case Strut::Edge::top:
            cut.setTop(std::max(rest.top(), root.top() + strut.width));
            break;
        case Strut::Edge::bottom:
            cut.setBottom(std::min(rest.bottom(), root.bottom() - strut.width));
            break;
        }
        if (cut.isValid()) {
            rest = cut;
        }
    }
    return rest;
}

} // namespace orvesa::X11Struts
