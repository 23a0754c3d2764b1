#pragma once

// The whole screen as it was at one moment, bright and dimmed, kept in the X server. Main thread; the connection must
// outlive it.

#include <QImage>
#include <QRect>

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <optional>

namespace orvesa {

class FrozenScreen final {
public:
    /// Copied by the server in one request, so that no menu or tooltip can come or go in the middle.
    FrozenScreen(xcb_connection_t *connection, const xcb_screen_t &screen);
    ~FrozenScreen();
    FrozenScreen(const FrozenScreen &) = delete;
    FrozenScreen &operator=(const FrozenScreen &) = delete;

    [[nodiscard]] xcb_pixmap_t bright() const { return m_bright; }
    [[nodiscard]] xcb_pixmap_t dimmed() const { return m_dimmed; }
    [[nodiscard]] xcb_gcontext_t context() const { return m_context; }
    [[nodiscard]] QSize size() const { return m_size; }
    /// For drawing on pixmaps of the screen's own depth; 0 where the server cannot blend.
    [[nodiscard]] xcb_render_pictformat_t format() const { return m_format; }
    [[nodiscard]] xcb_render_pictformat_t alphaFormat() const { return m_alphaFormat; }

    /// The bright pixels; nothing when the server does not give them.
    [[nodiscard]] std::optional<QImage> pixels(const QRect &part) const;

private:
    void findFormats();
    void dim();

    xcb_connection_t *m_connection;
    const xcb_screen_t &m_screen;
    QSize m_size;
    xcb_pixmap_t m_bright;
    xcb_pixmap_t m_dimmed;
    xcb_gcontext_t m_context;
    xcb_render_pictformat_t m_format = 0;
    xcb_render_pictformat_t m_alphaFormat = 0;
};

} // namespace orvesa
