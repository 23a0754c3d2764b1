#include "UI/FloatingResultPanel.h"

#include "Platform/PanelWindowPort.h"
#include "UI/FloatingResultView.h"
#include "UI/Style.h"
#include "UI/WindowKeys.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainterPath>
#include <QRegion>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// Longer than a window manager needs to take a window over, and shorter than a user to move it by other means than
/// ours.
constexpr qint64 takeOverMilliseconds = 500;

/// Screen readers take the panel for the dialog that it is to them; Qt alone would call it a filler.
QAccessibleInterface *accessiblePanel(const QString &className, QObject *object)
{
    auto *panel = className == "orvesa::FloatingResultPanel"_L1 ? qobject_cast<QWidget *>(object) : nullptr;
    return panel != nullptr ? new QAccessibleWidget(panel, QAccessible::Dialog) : nullptr;
}

} // namespace

FloatingResultPanel::FloatingResultPanel(FloatingResultView *content, PanelWindowPort &port,
                                         std::function<void()> onEscape)
    : WindowDragArea(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_content(content),
      m_port(port), m_onEscape(std::move(onEscape))
{
    QAccessible::installFactory(accessiblePanel);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    // The controller alone decides the window's size.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(content);
    WindowKeys::add(*this, m_onEscape);
}

void FloatingResultPanel::prepare()
{
    if (windowHandle() == nullptr || windowHandle()->handle() == nullptr) {
        winId();
        m_port.makePanel(*windowHandle());
    }
}

void FloatingResultPanel::orderFront(const QRect &frame)
{
    prepare();
    m_place = frame.topLeft();
    setGeometry(frame);
    if (isVisible()) {
        orderFrontRegardless();
        return;
    }
    updateShape();
    // Nothing is asked of the server between the showing and the first painting: a window manager that takes a window
    // over keeps everybody else's questions waiting, and what else begins now would wait with them.
    m_content->setMotion(m_port.reducesMotion() ? Spinner::Motion::reduced : Spinner::Motion::full);
    m_shown.start();
    show();
}

QRect FloatingResultPanel::frame() const
{
    const bool isBeingTakenOver = m_place && m_shown.isValid() && m_shown.elapsed() < takeOverMilliseconds;
    return isBeingTakenOver ? QRect(*m_place, size()) : geometry();
}

void FloatingResultPanel::setFrame(const QRect &frame)
{
    if (m_place) {
        m_place = frame.topLeft();
    }
    setGeometry(frame);
}

void FloatingResultPanel::orderFrontRegardless()
{
    if (!m_port.orderFront(*windowHandle())) {
        raise();
    }
}

void FloatingResultPanel::moveWindow(QPoint pressed)
{
    m_place.reset();
    if (!m_port.startMove(*windowHandle(), pressed)) {
        WindowDragArea::moveWindow(pressed);
    }
}

void FloatingResultPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        m_onEscape();
        return;
    }
    WindowDragArea::keyPressEvent(event);
}

void FloatingResultPanel::resizeEvent(QResizeEvent *event)
{
    WindowDragArea::resizeEvent(event);
    updateShape();
}

void FloatingResultPanel::updateShape()
{
    const bool isBlended = m_port.isCompositing();
    // Most showings have the size of an earlier one, and cutting a shape out takes a while.
    if (m_shape && m_shape->isBlended == isBlended && (isBlended || m_shape->size == size())) {
        return;
    }
    m_shape = Shape{isBlended, size()};
    m_content->setCorners(isBlended ? FloatingResultView::Corners::blended : FloatingResultView::Corners::cut);
    if (isBlended) {
        clearMask();
        return;
    }
    // Without blending the corners would be black; a shape cuts them off.
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()), Style::panelRadius, Style::panelRadius);
    // Curves become polygons at the size that they are asked for: a larger one gives smoother corners.
    constexpr qreal detail = 16;
    const QPolygonF polygon = outline.toFillPolygon(QTransform::fromScale(detail, detail));
    setMask(QRegion(QTransform::fromScale(1 / detail, 1 / detail).map(polygon).toPolygon()));
}

} // namespace orvesa
