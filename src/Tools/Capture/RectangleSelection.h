#pragma once

// The rectangle that the user is choosing, by pointer or keyboard, in device pixels of the whole screen. A value
// without any idea of a display; any thread.

#include <QPoint>
#include <QRect>
#include <QSize>

namespace orvesa {

class RectangleSelection final {
public:
    enum class State { choosing, taken, cancelled };
    enum class Step { move, size };

    /// `scale` is how many device pixels a point has.
    RectangleSelection(QSize screen, double scale);

    void press(QPoint place);
    void moveTo(QPoint place);
    /// Takes the rectangle; nothing worth the name of one is a cancel.
    void release(QPoint place);
    /// Moves or sizes by so many steps; the first one makes a rectangle around the pointer.
    void step(QPoint steps, Step kind);
    void take();
    void cancel();

    [[nodiscard]] State state() const { return m_state; }
    /// Empty while there is none.
    [[nodiscard]] QRect rectangle() const;

private:
    [[nodiscard]] QPoint inside(QPoint place) const;
    [[nodiscard]] int points(double count) const;

    QSize m_screen;
    double m_scale;
    State m_state = State::choosing;
    bool m_dragging = false;
    QPoint m_pointer;
    QPoint m_shift; ///< by which arrow keys have moved the rectangle under the pointer
    QPoint m_anchor;
    QPoint m_end;
};

} // namespace orvesa
