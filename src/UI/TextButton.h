#pragma once

// A push button with a text and, if wanted, a symbol before it. Space and Return press it. Main thread only.

#include <QPushButton>

namespace orvesa {

class TextButton final : public QPushButton {
    Q_OBJECT

public:
    enum class Look {
        bordered, ///< outlined, in the colour of fields
        prominent ///< filled with the accent
    };

    explicit TextButton(Look look, QWidget *parent = nullptr, QString symbol = {});

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    Look m_look;
    QString m_symbol;
};

} // namespace orvesa
