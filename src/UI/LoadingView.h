#pragma once

// A spinner and the word for thinking, shown while an answer is awaited.

#include <QWidget>

class QLabel;

namespace orvesa {

class Spinner;

class LoadingView final : public QWidget {
    Q_OBJECT

public:
    explicit LoadingView(QWidget *parent = nullptr);

    /// Takes the text from the interface language.
    void refresh(const QColor &textColor, const QColor &accent);

private:
    Spinner *m_spinner;
    QLabel *m_label;
};

} // namespace orvesa
