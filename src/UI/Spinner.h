#pragma once

// A compact progress indicator. It runs only while it can be seen. Main thread.

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

namespace orvesa {

class Spinner final : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget *parent = nullptr);

    [[nodiscard]] bool isSpinning() const { return m_timer.isActive(); }
    /// Turning, or standing still for users who asked for less motion.
    enum class Motion { full, reduced };
    void setMotion(Motion motion);
    void setAccent(const QColor &accent);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void startOrStop();

    QColor m_accent;
    Motion m_motion = Motion::full;
    QBasicTimer m_timer;
    QElapsedTimer m_elapsed;
};

} // namespace orvesa
