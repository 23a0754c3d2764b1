#include "Tools/Capture/FrozenScreen.h"

#include "Tools/Capture/PixelFormat.h"
#include "Tools/Capture/Reply.h"

#include <limits>

namespace orvesa {

namespace {

constexpr std::uint16_t dimming = 0x7000; // of black over the picture

} // namespace

FrozenScreen::FrozenScreen(xcb_connection_t *connection, const xcb_screen_t &screen)
    : m_connection(connection), m_screen(screen), m_size(screen.width_in_pixels, screen.height_in_pixels),
      m_bright(xcb_generate_id(connection)), m_dimmed(xcb_generate_id(connection)),
      m_context(xcb_generate_id(connection))
{
    const auto width = screen.width_in_pixels;
    const auto height = screen.height_in_pixels;
    xcb_create_pixmap(connection, screen.root_depth, m_bright, screen.root, width, height);
    // Windows are part of what is copied, and no event is wanted for each copy.
    const std::uint32_t values[] = {XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    xcb_create_gc(connection, m_context, screen.root, XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values);
    xcb_copy_area(connection, screen.root, m_bright, m_context, 0, 0, 0, 0, width, height);
    xcb_create_pixmap(connection, screen.root_depth, m_dimmed, screen.root, width, height);
    xcb_copy_area(connection, m_bright, m_dimmed, m_context, 0, 0, 0, 0, width, height);
    findFormats();
    dim();
}

FrozenScreen::~FrozenScreen()
{
    xcb_free_gc(m_connection, m_context);
    xcb_free_pixmap(m_connection, m_dimmed);
    xcb_free_pixmap(m_connection, m_bright);
}

void FrozenScreen::findFormats()
{
    const auto *extension = xcb_get_extension_data(m_connection, &xcb_render_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    const Reply<xcb_render_query_pict_formats_reply_t> formats(
        xcb_render_query_pict_formats_reply(m_connection, xcb_render_query_pict_formats(m_connection), nullptr));
    if (!formats) {
        return;
    }
    for (auto screen = xcb_render_query_pict_formats_screens_iterator(formats.get()); screen.rem > 0;
         xcb_render_pictscreen_next(&screen)) {
        for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem > 0;
             xcb_render_pictdepth_next(&depth)) {
            for (auto visual = xcb_render_pictdepth_visuals_iterator(depth.data); visual.rem > 0;
                 xcb_render_pictvisual_next(&visual)) {
                if (visual.data->visual == m_screen.root_visual) {
                    m_format = visual.data->format;
                }
            }
        }
    }
    for (auto format = xcb_render_query_pict_formats_formats_iterator(formats.get()); format.rem > 0;
         xcb_render_pictforminfo_next(&format)) {
        const xcb_render_directformat_t &direct = format.data->direct;
        if (format.data->depth == 32 && direct.alpha_mask == 0xff && direct.alpha_shift == 24 &&
            direct.red_shift == 16 && direct.blue_shift == 0) {
            m_alphaFormat = format.data->id;
        }
    }
}

void FrozenScreen::dim()
{
    if (m_format == 0) {
        return;
    }
    const xcb_render_picture_t picture = xcb_generate_id(m_connection);
    xcb_render_create_picture(m_connection, picture, m_dimmed, m_format, 0, nullptr);
    const xcb_render_color_t shade{0, 0, 0, dimming};
    const xcb_rectangle_t all{0, 0, m_screen.width_in_pixels, m_screen.height_in_pixels};
    xcb_render_fill_rectangles(m_connection, XCB_RENDER_PICT_OP_OVER, picture, shade, 1, &all);
    xcb_render_free_picture(m_connection, picture);
}

std::optional<QImage> FrozenScreen::pixels(const QRect &part) const
{
    const QRect inside = part.intersected(QRect(QPoint(), m_size));
    if (inside.isEmpty()) {
        return std::nullopt;
    }
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_bright, static_cast<std::int16_t>(inside.x()),
                      static_cast<std::int16_t>(inside.y()), static_cast<std::uint16_t>(inside.width()),
                      static_cast<std::uint16_t>(inside.height()), std::numeric_limits<std::uint32_t>::max()),
        nullptr));
    if (!reply) {
        return std::nullopt;
    }
    const std::optional<PixelFormat> format = pixelFormatOf(m_connection, m_screen);
    if (!format) {
        return std::nullopt;
    }
    return imageFrom(*format, xcb_get_image_data(reply.get()),
                     static_cast<std::size_t>(xcb_get_image_data_length(reply.get())), inside.size());
}

} // namespace orvesa
