#include "Tools/Capture/X11Capture.h"

#include "Tools/Capture/CaptureOverlay.h"
#include "Tools/Capture/FrozenScreen.h"
#include "Tools/Capture/InputGrab.h"
#include "Tools/Capture/Monitors.h"
#include "Tools/Capture/RectangleSelection.h"
#include "Tools/Capture/Reply.h"

#include <QGuiApplication>

#include <xcb/xcb_keysyms.h>

#include <algorithm>
#include <chrono>
#include <memory>

#include <poll.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds patience{3'000};
constexpr int mostRaises = 20; // another program that insists on being on top is let be

struct Disconnect {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
struct FreeSymbols {
    void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
};

namespace keysym {

constexpr xcb_keysym_t escape = 0xff1b;
constexpr xcb_keysym_t enter = 0xff0d;
constexpr xcb_keysym_t keypadEnter = 0xff8d;
constexpr xcb_keysym_t left = 0xff51;
constexpr xcb_keysym_t up = 0xff52;
constexpr xcb_keysym_t right = 0xff53;
constexpr xcb_keysym_t down = 0xff54;

} // namespace keysym

class Session final {
public:
    Session(xcb_connection_t *connection, const xcb_screen_t &screen)
        : m_connection(connection), m_screen(screen), m_frozen(connection, screen),
          m_overlay(connection, screen, m_frozen), m_grab(connection, m_overlay.window(), patience),
          m_symbols(xcb_key_symbols_alloc(connection)), m_scale(scaleOf(connection, screen)),
          m_selection(QSize(screen.width_in_pixels, screen.height_in_pixels), m_scale)
    {
        m_grab.tryAgain();
    }

    void decorate()
    {
        m_overlay.decorate(monitorsOf(m_connection, m_screen), m_scale);
        m_grab.setCursor(m_overlay.cursor());
        const Reply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, m_screen.root), nullptr));
        if (pointer) {
            m_selection.moveTo({pointer->root_x, pointer->root_y});
        }
    }

    CaptureOutcome run()
    {
        while (m_selection.state() == RectangleSelection::State::choosing) {
            if (!handleEvents()) {
                return failed(u"the X server closed the connection"_s);
            }
            if (m_grab.state() != InputGrab::State::held && m_grab.tryAgain() == InputGrab::State::refused) {
                return failed(u"another program holds the pointer or the keyboard"_s);
            }
            if (!m_announced && m_grab.state() == InputGrab::State::held) {
                m_announced = true;
                m_overlay.announce();
            }
            if (m_selection.state() == RectangleSelection::State::choosing) {
                awaitEvents(m_grab.state() != InputGrab::State::held);
            }
        }
        if (m_selection.state() == RectangleSelection::State::cancelled) {
            return {{}, m_scale, {}};
        }
        const std::optional<QImage> image = m_frozen.pixels(m_selection.rectangle());
        return image ? CaptureOutcome{*image, m_scale, {}} : failed(u"the X server did not give the picture"_s);
    }

private:
    [[nodiscard]] CaptureOutcome failed(const QString &reason) const { return {{}, m_scale, reason}; }

    void awaitEvents(bool tryAgain)
    {
        xcb_flush(m_connection);
        // Sending may have received: what is queued already would not wake a wait on the socket.
        m_next.reset(xcb_poll_for_queued_event(m_connection));
        if (m_next) {
            return;
        }
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&descriptor, 1, tryAgain ? static_cast<int>(InputGrab::interval.count()) : -1);
    }

    /// Everything that has arrived. False when nothing will arrive any more.
    bool handleEvents()
    {
        const QRect before = m_selection.rectangle();
        while (m_next || (m_next = Reply<xcb_generic_event_t>(xcb_poll_for_event(m_connection)))) {
            handle(*m_next);
            m_next.reset();
            if (m_selection.state() != RectangleSelection::State::choosing) {
                return true;
            }
        }
        if (m_selection.rectangle() != before) {
            m_overlay.show(m_selection.rectangle());
        }
        return xcb_connection_has_error(m_connection) == 0;
    }

    void handle(const xcb_generic_event_t &event)
    {
        constexpr std::uint8_t sentByClient = 0x80;
        if ((event.response_type & sentByClient) != 0) {
            return;
        }
        switch (event.response_type) {
        case XCB_BUTTON_PRESS:
            handlePress(reinterpret_cast<const xcb_button_press_event_t &>(event));
            break;
        case XCB_BUTTON_RELEASE: {
            const auto &release = reinterpret_cast<const xcb_button_release_event_t &>(event);
            if (release.detail == XCB_BUTTON_INDEX_1) {
                m_selection.release({release.root_x, release.root_y});
            }
            break;
        }
        case XCB_MOTION_NOTIFY: {
            const auto &motion = reinterpret_cast<const xcb_motion_notify_event_t &>(event);
            m_selection.moveTo({motion.root_x, motion.root_y});
            break;
        }
        case XCB_KEY_PRESS:
            handleKey(reinterpret_cast<const xcb_key_press_event_t &>(event));
            break;
        case XCB_VISIBILITY_NOTIFY:
            if (reinterpret_cast<const xcb_visibility_notify_event_t &>(event).state != XCB_VISIBILITY_UNOBSCURED &&
                ++m_raises <= mostRaises) {
                m_overlay.raise();
            }
            break;
        default:
            break;
        }
    }

    void handlePress(const xcb_button_press_event_t &press)
    {
        if (press.detail == XCB_BUTTON_INDEX_1) {
            m_selection.press({press.root_x, press.root_y});
        } else if (press.detail == XCB_BUTTON_INDEX_3) {
            m_selection.cancel();
        }
    }

    void handleKey(const xcb_key_press_event_t &key)
    {
        const auto kind =
            (key.state & XCB_MOD_MASK_SHIFT) != 0 ? RectangleSelection::Step::size : RectangleSelection::Step::move;
        switch (xcb_key_symbols_get_keysym(m_symbols.get(), key.detail, 0)) {
        case keysym::escape:
            m_selection.cancel();
            break;
        case keysym::enter:
        case keysym::keypadEnter:
            m_selection.take();
            break;
        case keysym::left:
            m_selection.step({-1, 0}, kind);
            break;
        case keysym::right:
            m_selection.step({1, 0}, kind);
            break;
        case keysym::up:
            m_selection.step({0, -1}, kind);
            break;
        case keysym::down:
            m_selection.step({0, 1}, kind);
            break;
        default:
            break;
        }
    }

    xcb_connection_t *m_connection;
    const xcb_screen_t &m_screen;
    FrozenScreen m_frozen;
    CaptureOverlay m_overlay;
    InputGrab m_grab;
    std::unique_ptr<xcb_key_symbols_t, FreeSymbols> m_symbols;
    double m_scale;
    RectangleSelection m_selection;
    Reply<xcb_generic_event_t> m_next; ///< received and not handled yet
    int m_raises = 0;
    bool m_announced = false;
};

} // namespace

CaptureOutcome captureOnX11(int &argc, char **argv)
{
    int number = 0;
    const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return {{}, 1, u"the X display cannot be opened"_s};
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; number > 0 && screens.rem > 1; --number) {
        xcb_screen_next(&screens);
    }
    Session session(connection.get(), *screens.data);
    // Fonts for the label, and nothing else: windows and events are not Qt's here.
    ::qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    session.decorate();
    return session.run();
}

} // namespace orvesa
