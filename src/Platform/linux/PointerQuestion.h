#pragma once

// A question for the pointer's place that is under way, for whoever waits for it.
//
// Main thread. Jobs wait for answered() without a time limit of their own: QCoro delivers a signal from the event loop,
// so that a second signal, or a limit that passes in between, would reach a job that has gone on and may be freed. Here
// the answer and the limit go through one place, which emits once for each question. A job holds the question while it
// waits, so that it goes on when the one who asked is destroyed.

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <chrono>
#include <optional>

namespace orvesa {

class PointerQuestion final : public QObject {
    Q_OBJECT

public:
    /// `bound` is how long an answer is waited for.
    explicit PointerQuestion(std::chrono::milliseconds bound);
    ~PointerQuestion() override;

    [[nodiscard]] bool isAsked() const { return m_isAsked; }
    /// answered() follows, within the bound.
    void ask();
    /// Ends the question that is under way, or does nothing.
    void answer(std::optional<QPointF> place);

Q_SIGNALS:
    /// Nothing when nobody has said it in time.
    void answered(const std::optional<QPointF> &place);

private:
    QTimer m_bound;
    bool m_isAsked = false;
};

} // namespace orvesa
