#pragma once

// Work that can wait, done piece by piece. Each piece has a turn of the event loop to itself, so that a shortcut
// pressed in between is served before the next one.
//
// Main thread. It ends with its last piece or with the object; what the pieces use must live until then.

#include <QBasicTimer>
#include <QObject>

#include <deque>
#include <functional>

namespace orvesa {

class WarmUp final : public QObject {
public:
    using Piece = std::function<void()>;

    /// Nothing happens before the event loop is back and has nothing else to do.
    void start(std::deque<Piece> pieces);
    [[nodiscard]] bool isDone() const { return m_pieces.empty(); }

protected:
    void timerEvent(QTimerEvent *event) override;
    void customEvent(QEvent *event) override;

private:
    std::deque<Piece> m_pieces;
    QBasicTimer m_turn;
};

} // namespace orvesa
