#pragma once

// A text in the accent colour that leads out of the program, with a symbol that says so. Main thread only.

#include <QAbstractButton>

namespace orvesa {

class LinkButton final : public QAbstractButton {
    Q_OBJECT

public:
    explicit LinkButton(QString symbol, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QString m_symbol;
};

} // namespace orvesa
