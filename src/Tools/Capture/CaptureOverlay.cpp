#include "Tools/Capture/CaptureOverlay.h"

#include "Tools/Capture/LabelPlacement.h"
#include "Tools/Capture/OverlayArt.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvesa {

namespace {

constexpr std::uint32_t framePixel = 0x7b72f7; // the accent, which is seen on white, on black and between them
constexpr double framePoints = 2;
constexpr int labelGap = 6; // points

/// An image in the server that can be blended. The caller frees the picture.
xcb_render_picture_t uploaded(xcb_connection_t *connection, xcb_window_t root, xcb_render_pictformat_t format,
                              const QImage &image)
{
    const auto width = static_cast<std::uint16_t>(image.width());
    const auto height = static_cast<std::uint16_t>(image.height());
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t context = xcb_generate_id(connection);
    constexpr std::uint8_t depth = 32;
    xcb_create_pixmap(connection, depth, pixmap, root, width, height);
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, height, 0, 0, 0, depth,
                  static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
    const xcb_render_picture_t picture = xcb_generate_id(connection);
    xcb_render_create_picture(connection, picture, pixmap, format, 0, nullptr);
    xcb_free_gc(connection, context);
    xcb_free_pixmap(connection, pixmap);
    return picture;
}

} // namespace

CaptureOverlay::CaptureOverlay(xcb_connection_t *connection, const xcb_screen_t &screen, const FrozenScreen &frozen)
    : m_connection(connection), m_screen(screen), m_frozen(frozen), m_window(xcb_generate_id(connection)),
      m_canvas(xcb_generate_id(connection)), m_context(xcb_generate_id(connection))
{
    const auto width = screen.width_in_pixels;
    const auto height = screen.height_in_pixels;
    // The background is the dimmed picture itself: the server shows it with the window, and repairs it alone.
    const std::uint32_t values[] = {frozen.dimmed(), 1,
                                    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_KEY_PRESS |
                                        XCB_EVENT_MASK_VISIBILITY_CHANGE};
    xcb_create_window(connection, screen.root_depth, m_window, screen.root, 0, 0, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    constexpr char instance[] = "orvesa-screencapture\0orvesa-screencapture";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof instance, instance);
    xcb_map_window(connection, m_window);
    raise();
    xcb_create_pixmap(connection, screen.root_depth, m_canvas, screen.root, width, height);
    const std::uint32_t contextValues[] = {framePixel, 0};
    xcb_create_gc(connection, m_context, m_canvas, XCB_GC_FOREGROUND | XCB_GC_GRAPHICS_EXPOSURES, contextValues);
    copy(frozen.dimmed(), m_canvas, QRect(0, 0, width, height));
    xcb_flush(connection);
}

CaptureOverlay::~CaptureOverlay()
{
    if (m_cursor != 0) {
        xcb_free_cursor(m_connection, m_cursor);
    }
    xcb_destroy_window(m_connection, m_window);
    xcb_free_gc(m_connection, m_context);
    xcb_free_pixmap(m_connection, m_canvas);
    xcb_flush(m_connection);
}

void CaptureOverlay::announce()
{
    constexpr char name[] = "Screen capture";
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        sizeof name - 1, name);
    xcb_flush(m_connection);
}

void CaptureOverlay::raise()
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(m_connection);
}

void CaptureOverlay::decorate(std::vector<QRect> monitors, double scale)
{
    m_monitors = std::move(monitors);
    m_scale = scale;
    if (m_frozen.alphaFormat() == 0) {
        return;
    }
    const OverlayArt::Crosshair crosshair = OverlayArt::crosshair(scale);
    const xcb_render_picture_t picture = uploaded(m_connection, m_screen.root, m_frozen.alphaFormat(), crosshair.image);
    m_cursor = xcb_generate_id(m_connection);
    xcb_render_create_cursor(m_connection, m_cursor, picture, static_cast<std::uint16_t>(crosshair.hot),
                             static_cast<std::uint16_t>(crosshair.hot));
    xcb_render_free_picture(m_connection, picture);
    xcb_change_window_attributes(m_connection, m_window, XCB_CW_CURSOR, &m_cursor);
    xcb_flush(m_connection);
}

int CaptureOverlay::frameWidth() const
{
    return std::max(1, static_cast<int>(std::lround(framePoints * m_scale)));
}

void CaptureOverlay::copy(xcb_drawable_t from, xcb_drawable_t to, const QRect &part) const
{
    const QRect inside = part.intersected(QRect(QPoint(), m_frozen.size()));
    if (inside.isEmpty()) {
        return;
    }
    const auto x = static_cast<std::int16_t>(inside.x());
    const auto y = static_cast<std::int16_t>(inside.y());
    xcb_copy_area(m_connection, from, to, m_context, x, y, x, y, static_cast<std::uint16_t>(inside.width()),
                  static_cast<std::uint16_t>(inside.height()));
}

/// Outside the rectangle, so that every chosen pixel is seen as it is.
void CaptureOverlay::drawFrame(const QRect &rectangle) const
{
    const int width = frameWidth();
    const QRect outer = rectangle.adjusted(-width, -width, width, width);
    const auto side = [](const QRect &box) {
        return xcb_rectangle_t{static_cast<std::int16_t>(box.x()), static_cast<std::int16_t>(box.y()),
                               static_cast<std::uint16_t>(box.width()), static_cast<std::uint16_t>(box.height())};
    };
    const std::array sides{side({outer.left(), outer.top(), outer.width(), width}),
                           side({outer.left(), outer.bottom() + 1 - width, outer.width(), width}),
                           side({outer.left(), outer.top(), width, outer.height()}),
                           side({outer.right() + 1 - width, outer.top(), width, outer.height()})};
    xcb_poly_fill_rectangle(m_connection, m_canvas, m_context, static_cast<std::uint32_t>(sides.size()), sides.data());
}

void CaptureOverlay::drawLabel(const QImage &label, QPoint place) const
{
    if (m_frozen.alphaFormat() == 0 || m_frozen.format() == 0) {
        return;
    }
    const xcb_render_picture_t source = uploaded(m_connection, m_screen.root, m_frozen.alphaFormat(), label);
    const xcb_render_picture_t target = xcb_generate_id(m_connection);
    xcb_render_create_picture(m_connection, target, m_canvas, m_frozen.format(), 0, nullptr);
    xcb_render_composite(m_connection, XCB_RENDER_PICT_OP_OVER, source, XCB_RENDER_PICTURE_NONE, target, 0, 0, 0, 0,
                         static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                         static_cast<std::uint16_t>(label.width()), static_cast<std::uint16_t>(label.height()));
    xcb_render_free_picture(m_connection, target);
    xcb_render_free_picture(m_connection, source);
}

void CaptureOverlay::show(const QRect &rectangle)
{
    const QRect before = m_shown | m_shownLabel;
    copy(m_frozen.dimmed(), m_canvas, m_shown);
    copy(m_frozen.dimmed(), m_canvas, m_shownLabel);
    m_shown = {};
    m_shownLabel = {};
    if (!rectangle.isEmpty()) {
        copy(m_frozen.bright(), m_canvas, rectangle);
        drawFrame(rectangle);
        const int width = frameWidth();
        m_shown = rectangle.adjusted(-width, -width, width, width);
        const QImage label = OverlayArt::sizeLabel(rectangle.size(), m_scale);
        m_shownLabel =
            labelPlacement(m_shown, label.size(), m_monitors, static_cast<int>(std::lround(labelGap * m_scale)));
        drawLabel(label, m_shownLabel.topLeft());
    }
    copy(m_canvas, m_window, before);
    copy(m_canvas, m_window, m_shown);
    copy(m_canvas, m_window, m_shownLabel);
    xcb_flush(m_connection);
}

} // namespace orvesa
