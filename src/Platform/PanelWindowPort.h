#pragma once

// What makes a top-level window a floating panel that never activates its application. Main thread.

#include <QCoroTask>

#include <QPoint>
#include <QRect>

#include <optional>

QT_FORWARD_DECLARE_CLASS(QObject)
QT_FORWARD_DECLARE_CLASS(QScreen)
QT_FORWARD_DECLARE_CLASS(QString)
QT_FORWARD_DECLARE_CLASS(QWindow)

namespace orvesa {

class PanelWindowPort {
public:
    virtual ~PanelWindowPort() = default;

    /// Gives a created but not yet shown window the panel's behaviour: above ordinary windows, on every desktop, out of
    /// task bars and pagers, no focus when shown. Call again after the native window was recreated.
    virtual void makePanel(QWindow &window) = 0;

    /// Brings a shown panel above other windows without giving it the focus. False where Qt's way does that.
    virtual bool orderFront(QWindow &window)
    {
        Q_UNUSED(window)
        return false;
    }

    /// Has the desktop move the window with the pointer until the button comes up, from where the button went down
    /// (device-independent pixels, whole desktop). False where Qt's way does that.
    virtual bool startMove(QWindow &window, QPoint pressed)
    {
        Q_UNUSED(window)
        Q_UNUSED(pressed)
        return false;
    }

    /// The part of the screen that docks, task bars and menu bars leave free, in device-independent pixels.
    /// `available` is what Qt takes it for.
    [[nodiscard]] virtual QRect visibleFrame(const QScreen &screen, QRect available) const
    {
        Q_UNUSED(screen)
        return available;
    }

    /// The pointer's place in device-independent pixels, on a desktop that tells Qt of it only over windows of its own
    /// kind; an answer may take 100 ms there. Nothing where Qt knows it.
    [[nodiscard]] virtual QCoro::Task<std::optional<QPoint>> pointer() { co_return std::nullopt; }

    /// Has screen readers say the text, in the name of that window (a widget or a window that is shown).
    virtual void announce(QObject &window, const QString &text)
    {
        Q_UNUSED(window)
        Q_UNUSED(text)
    }

    /// Whether the user asked the desktop to have nothing move that need not.
    [[nodiscard]] virtual bool reducesMotion() const { return false; }

    /// Whether translucent windows are blended with what lies below them at this moment.
    [[nodiscard]] virtual bool isCompositing() const = 0;
};

} // namespace orvesa
