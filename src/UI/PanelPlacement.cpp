#include "UI/PanelPlacement.h"

#include <algorithm>
#include <cmath>

namespace orvesa::PanelPlacement {

namespace {

// The order of the two bounds matters when the panel is larger than the screen: it ends flush with the right margin and
// with the top margin.
QPoint clamped(QPoint origin, QSize panel, const QRect &visible)
{
    const int right = visible.x() + visible.width();
    const int bottom = visible.y() + visible.height();
    const int x = std::min(std::max(origin.x(), visible.x() + screenMargin), right - panel.width() - screenMargin);
    const int y = std::max(std::min(origin.y(), bottom - panel.height() - screenMargin), visible.y() + screenMargin);
    return {x, y};
}

std::optional<Screen> mainScreen(const Screens &screens)
{
    if (screens.main && *screens.main < screens.all.size()) {
        return screens.all[*screens.main];
    }
    return std::nullopt;
}

std::optional<Screen> screenAt(QPoint pointer, const Screens &screens)
{
    const auto found = std::find_if(screens.all.begin(), screens.all.end(),
                                    [&](const Screen &screen) { return screen.frame.contains(pointer); });
    return found != screens.all.end() ? *found : mainScreen(screens);
}

} // namespace

QPoint nearPointer(QPoint pointer, QSize panel, const Screens &screens)
{
    const QPoint proposed = pointer + QPoint(pointerOffset, pointerOffset);
    const auto screen = screenAt(pointer, screens);
    return screen ? clamped(proposed, panel, screen->visibleFrame) : proposed;
}

std::optional<Screen> ownScreen(const QRect &panel, const Screens &screens)
{
    const auto shared = [&panel](const Screen &screen) {
        const QRect common = screen.frame.intersected(panel);
        return qint64{common.width()} * common.height();
    };
    const auto most = std::max_element(screens.all.begin(), screens.all.end(), [&](const auto &one, const auto &other) {
        return shared(one) < shared(other);
    });
    return most != screens.all.end() && shared(*most) > 0 ? *most : mainScreen(screens);
}

bool needsNewFrame(QSizeF current, QSizeF ideal)
{
    constexpr qreal tolerance = 0.5;
    return std::abs(ideal.width() - current.width()) > tolerance ||
           std::abs(ideal.height() - current.height()) > tolerance;
}

QRect refitted(const QRect &current, QSize size, const std::optional<Screen> &screen)
{
    const QPoint origin = screen ? clamped(current.topLeft(), size, screen->visibleFrame) : current.topLeft();
    return {origin, size};
}

} // namespace orvesa::PanelPlacement
