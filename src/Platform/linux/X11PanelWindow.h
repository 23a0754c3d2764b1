#pragma once

// Window type and states that make a Qt window a floating panel under X11 window managers.
//
// Main thread. The properties are written on Qt's own connection, so that they follow the window's creation and precede
// its mapping; since a window manager drops them when a window is hidden, they are written again at every showing. On
// another platform plugin than xcb only what Qt's window flags do remains.

#include "Platform/PanelWindowPort.h"
#include "Platform/linux/WaylandPointer.h"
#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11StateSilence.h"

#include <QObject>
#include <QPointer>
#include <QWindow>

namespace orvesa {

class X11PanelWindow final : public QObject, public PanelWindowPort {
public:
    /// The connection must outlive this object.
    explicit X11PanelWindow(X11Connection &connection);

    void makePanel(QWindow &window) override;
    bool orderFront(QWindow &window) override;
    bool startMove(QWindow &window, QPoint pressed) override;
    [[nodiscard]] QRect visibleFrame(const QScreen &screen, QRect available) const override;
    [[nodiscard]] QCoro::Task<std::optional<QPoint>> pointer() override;
    void announce(QObject &window, const QString &text) override;
    [[nodiscard]] bool reducesMotion() const override;
    [[nodiscard]] bool isCompositing() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    X11Connection &m_connection;
    WaylandPointer m_pointer{m_connection};
    QPointer<QWindow> m_appearing;           ///< shown and not yet on the screen
    X11StateSilence m_silence{m_connection}; ///< as long
};

} // namespace orvesa
