#pragma once

// The desktop's mouse, moved and clicked for real through XTest. Coordinates are pixels of the root window from its top
// left.
//
// Main thread; owned by the Desktop. Every operation returns after the server has processed it.

#include <QPoint>

#include <chrono>

namespace orvesa::desktop {

class XSession;

enum class MouseButton { left = 1, middle = 2, right = 3, wheelUp = 4, wheelDown = 5 };

/// Clicks that are this far apart are not two of one double click.
inline constexpr std::chrono::milliseconds doubleClick{500};

class Pointer final {
public:
    explicit Pointer(XSession &session);

    void moveTo(QPoint place);
    [[nodiscard]] QPoint position() const;
    void press(MouseButton button);
    void release(MouseButton button);
    void click(MouseButton button = MouseButton::left);
    void clickAt(QPoint place, MouseButton button = MouseButton::left);
    /// Presses at `from`, moves in steps to `to`, releases.
    void drag(QPoint from, QPoint to, MouseButton button = MouseButton::left);

private:
    XSession &m_session;
};

} // namespace orvesa::desktop
