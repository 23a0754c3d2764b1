#include "Tools/Capture/RectangleSelection.h"

#include <algorithm>
#include <cmath>

namespace orvesa {

namespace {

constexpr double firstWidth = 320; // points
constexpr double firstHeight = 120;
constexpr double stepLength = 8;
constexpr int leastSide = 3; // device pixels: less is a click with an unsteady hand

} // namespace

RectangleSelection::RectangleSelection(QSize screen, double scale) : m_screen(screen), m_scale(scale) {}

int RectangleSelection::points(double count) const
{
    return static_cast<int>(std::lround(count * m_scale));
}

/// The last row and column can be reached: at the screen's edge the rectangle ends with the screen.
QPoint RectangleSelection::inside(QPoint place) const
{
    const auto reach = [](int value, int length) { return value >= length - 1 ? length : std::max(0, value); };
    return {reach(place.x(), m_screen.width()), reach(place.y(), m_screen.height())};
}

QRect RectangleSelection::rectangle() const
{
    const QPoint topLeft(std::min(m_anchor.x(), m_end.x()), std::min(m_anchor.y(), m_end.y()));
    const QPoint bottomRight(std::max(m_anchor.x(), m_end.x()), std::max(m_anchor.y(), m_end.y()));
    return {topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y())};
}

void RectangleSelection::press(QPoint place)
{
    m_dragging = true;
    m_shift = {};
    m_pointer = place;
    m_anchor = m_end = {std::clamp(place.x(), 0, m_screen.width()), std::clamp(place.y(), 0, m_screen.height())};
}

void RectangleSelection::moveTo(QPoint place)
{
    m_pointer = place;
    if (m_dragging) {
        m_end = inside(place + m_shift);
    }
}

void RectangleSelection::release(QPoint place)
{
    if (!m_dragging) {
        return;
    }
    moveTo(place);
    m_dragging = false;
    take();
}

void RectangleSelection::step(QPoint steps, Step kind)
{
    if (rectangle().isEmpty() && !m_dragging) {
        const QPoint half(points(firstWidth / 2), points(firstHeight / 2));
        m_anchor = inside(m_pointer - half);
        m_end = inside(m_pointer + half);
        return;
    }
    const QPoint distance = steps * points(stepLength);
    if (kind == Step::size) {
        m_end = inside(m_end + distance);
        return;
    }
    // As far as the screen allows, without changing the size.
    const QRect area = rectangle();
    const QPoint moved(std::clamp(distance.x(), -area.x(), m_screen.width() - area.x() - area.width()),
                       std::clamp(distance.y(), -area.y(), m_screen.height() - area.y() - area.height()));
    m_anchor += moved;
    m_end += moved;
    m_shift += m_dragging ? moved : QPoint();
}

void RectangleSelection::take()
{
    const QRect area = rectangle();
    m_state = area.width() < leastSide || area.height() < leastSide ? State::cancelled : State::taken;
}

void RectangleSelection::cancel()
{
    m_state = State::cancelled;
}

} // namespace orvesa
