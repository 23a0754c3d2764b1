#include "App/WarmUp.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <utility>

namespace orvesa {

namespace {

constexpr auto pieceEvent = QEvent::User;

} // namespace

void WarmUp::start(std::deque<Piece> pieces)
{
    m_pieces = std::move(pieces);
    if (!m_pieces.empty()) {
        m_turn.start(0, this);
    }
}

void WarmUp::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_turn.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    // Behind what events of this turn have scheduled: a press is passed on by another event before it is served.
    m_turn.stop();
    QCoreApplication::postEvent(this, new QEvent(pieceEvent), Qt::LowEventPriority);
}

void WarmUp::customEvent(QEvent *event)
{
    if (event->type() != pieceEvent || m_pieces.empty()) {
        return;
    }
    const Piece piece = std::move(m_pieces.front());
    m_pieces.pop_front();
    if (!m_pieces.empty()) {
        m_turn.start(0, this);
    }
    piece();
}

} // namespace orvesa
