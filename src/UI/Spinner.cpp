#include "UI/Spinner.h"

#include "UI/Style.h"

#include <QPainter>
#include <QTimerEvent>

#include <chrono>

namespace orvesa {

namespace {
constexpr std::chrono::milliseconds frameInterval(33);
constexpr qint64 turnMilliseconds = 900;
constexpr qreal strokeWidth = 2;
constexpr int sixteenthsOfADegree = 16;
constexpr int arcDegrees = 100;
} // namespace

Spinner::Spinner(QWidget *parent) : QWidget(parent)
{
    setFixedSize(sizeHint());
}

QSize Spinner::sizeHint() const
{
    return {Style::symbolSize, Style::symbolSize};
}

void Spinner::setMotion(Motion motion)
{
    m_motion = motion;
    startOrStop();
}

void Spinner::startOrStop()
{
    if (!isVisible() || m_motion == Motion::reduced) {
        m_timer.stop();
        m_elapsed.invalidate();
        update();
    } else if (!m_timer.isActive()) {
        m_elapsed.start();
        m_timer.start(static_cast<int>(frameInterval.count()), this);
    }
}

void Spinner::setAccent(const QColor &accent)
{
    m_accent = accent;
    update();
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle = QRectF(rect()).adjusted(strokeWidth / 2, strokeWidth / 2, -strokeWidth / 2, -strokeWidth / 2);
    painter.setPen(QPen(Style::colors(palette()).line, strokeWidth));
    painter.drawEllipse(circle);
    const qint64 elapsed = m_elapsed.isValid() ? m_elapsed.elapsed() % turnMilliseconds : 0;
    const int start = 90 - static_cast<int>(elapsed * 360 / turnMilliseconds);
    painter.setPen(QPen(m_accent, strokeWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, start * sixteenthsOfADegree, -arcDegrees * sixteenthsOfADegree);
}

void Spinner::showEvent(QShowEvent *event)
{
    startOrStop();
    QWidget::showEvent(event);
}

void Spinner::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

void Spinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        update();
    } else {
        QWidget::timerEvent(event);
    }
}

} // namespace orvesa
