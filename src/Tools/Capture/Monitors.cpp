#include "Tools/Capture/Monitors.h"

#include "Tools/Capture/Reply.h"

#include <xcb/randr.h>

#include <QList>

#include <algorithm>

namespace orvesa {

double scaleInResources(const QByteArray &resources)
{
    constexpr double usualDensity = 96;
    constexpr double most = 8;
    for (const QByteArray &line : resources.split('\n')) {
        if (line.startsWith("Xft.dpi:")) {
            bool isNumber = false;
            const double density = line.sliced(8).trimmed().toDouble(&isNumber);
            return isNumber && density > 0 ? std::clamp(density / usualDensity, 1.0, most) : 1;
        }
    }
    return 1;
}

double scaleOf(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    constexpr std::uint32_t mostWords = 64 * 1024;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, screen.root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, mostWords),
        nullptr));
    if (!reply) {
        return 1;
    }
    const auto *text = static_cast<const char *>(xcb_get_property_value(reply.get()));
    return scaleInResources(QByteArray(text, xcb_get_property_value_length(reply.get())));
}

std::vector<QRect> monitorsOf(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    std::vector<QRect> monitors;
    const auto *extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension != nullptr && extension->present != 0) {
        const Reply<xcb_randr_get_monitors_reply_t> reply(
            xcb_randr_get_monitors_reply(connection, xcb_randr_get_monitors(connection, screen.root, 1), nullptr));
        if (reply) {
            for (auto place = xcb_randr_get_monitors_monitors_iterator(reply.get()); place.rem > 0;
                 xcb_randr_monitor_info_next(&place)) {
                monitors.emplace_back(place.data->x, place.data->y, place.data->width, place.data->height);
            }
        }
    }
    if (monitors.empty()) {
        monitors.emplace_back(0, 0, screen.width_in_pixels, screen.height_in_pixels);
    }
    return monitors;
}

} // namespace orvesa
