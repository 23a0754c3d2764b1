#pragma once

// The small floating window that shows an answer. It never activates the program when it appears, stays above ordinary
// windows, and takes the keyboard only when the user clicks into it. Escape and the key for closing windows close it
// while it has the keyboard. It is dragged by its header and by every other place that is not text or a control.
//
// Main thread.

#include "UI/WindowDragArea.h"

#include <QElapsedTimer>

#include <functional>
#include <optional>

namespace orvesa {

class FloatingResultView;
class PanelWindowPort;

class FloatingResultPanel final : public WindowDragArea {
    Q_OBJECT

public:
    /// `content` becomes a child. The port must outlive the panel.
    FloatingResultPanel(FloatingResultView *content, PanelWindowPort &port, std::function<void()> onEscape);

    /// Creates the native window ahead of the first showing.
    void prepare();

    /// Puts the panel there and shows it above other windows, without activating the program.
    void orderFront(const QRect &frame);
    /// Where it is, or is going to be: a window manager that takes a window over may have it elsewhere for a moment.
    [[nodiscard]] QRect frame() const;
    void setFrame(const QRect &frame);
    /// Brings a visible panel above other windows without moving it.
    void orderFrontRegardless();

protected:
    void moveWindow(QPoint pressed) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void updateShape();

    /// How the window's corners were last made round.
    struct Shape {
        bool isBlended;
        QSize size;
    };

    FloatingResultView *m_content;
    PanelWindowPort &m_port;
    std::function<void()> m_onEscape;
    std::optional<Shape> m_shape;
    std::optional<QPoint> m_place; ///< given to it since it was shown, and not left by the user's hand
    QElapsedTimer m_shown;
};

} // namespace orvesa
