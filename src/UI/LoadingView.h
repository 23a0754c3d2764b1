#pragma once

// A spinner and the word for thinking, shown while an answer is awaited. Main thread.

#include "UI/Spinner.h"

#include <QWidget>

class QLabel;

namespace orvesa {

class LoadingView final : public QWidget {
    Q_OBJECT

public:
    explicit LoadingView(QWidget *parent = nullptr);

    /// Takes the text from the interface language.
    void refresh(const QColor &textColor, const QColor &accent);

    void setMotion(Spinner::Motion motion) { m_spinner->setMotion(motion); }

private:
    Spinner *m_spinner;
    QLabel *m_label;
};

} // namespace orvesa
