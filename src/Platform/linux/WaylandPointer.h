#pragma once

// Where the pointer is in a Wayland session. The X server inside it, and so Qt, hears of the pointer only over windows
// of X programs.
//
// Main thread. Outside such a session nothing is done.

#include "Platform/linux/KWinPointer.h"
#include "Platform/linux/PointerQuestion.h"
#include "Platform/linux/X11Connection.h"

#include <QCoroTask>

#include <QObject>
#include <QPoint>

#include <chrono>
#include <memory>
#include <optional>

namespace orvesa {

class WaylandPointer final : public QObject {
    Q_OBJECT

public:
    /// The connection must outlive this object.
    explicit WaylandPointer(X11Connection &connection);
    ~WaylandPointer() override;

    /// In native pixels of the X server. Nothing where Qt knows it, nobody says it in time, or this object goes.
    /// Those who ask at the same time get the same answer, in their order.
    [[nodiscard]] QCoro::Task<std::optional<QPoint>> position();

    /// Longer than a compositor needs to draw a window once, and too short to be felt.
    static constexpr std::chrono::milliseconds bound{80};

private:
    /// A transparent window over everything, for as long as it takes the compositor to say where in it the pointer is.
    [[nodiscard]] QCoro::Task<std::optional<QPoint>> positionByWindow();
    [[nodiscard]] xcb_window_t showWindow();
    void removeWindow();
    void handle(const xcb_generic_event_t &event);

    X11Connection &m_connection;
    X11Connection::HandlerToken m_token = 0;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::shared_ptr<PointerQuestion> m_question;
    KWinPointer m_kwin;
};

} // namespace orvesa
