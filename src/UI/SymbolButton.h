#pragma once

// A small button that shows one symbol. Its text is its tooltip and its name for screen readers. Main thread.

#include "UI/Style.h"

#include <QAbstractButton>

namespace orvesa {

class SymbolButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Look {
        bordered,   ///< outlined, on the window's background
        prominent,  ///< filled with the accent colour
        borderless, ///< the symbol alone, in the secondary colour
        plain       ///< the symbol alone, white, for the coloured header
    };

    SymbolButton(QString symbol, Look look, QWidget *parent = nullptr);

    /// Tooltip and accessible name.
    void setDescription(const QString &text);
    void setAccent(const QColor &accent);
    /// How solid a borderless symbol is, for one that offers nothing at the moment.
    void setSymbolOpacity(qreal opacity);

    [[nodiscard]] QSize sizeHint() const override;
    /// The widget is larger than the button by this much on each side, so that the focus ring has room.
    [[nodiscard]] static constexpr int outset() { return Style::focusRingWidth; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void paintPlain(QPainter &painter, const QRectF &button) const;
    void paintBorderless(QPainter &painter, const QRectF &button) const;
    void paintFramed(QPainter &painter, const QRectF &button) const;

    QString m_symbol;
    Look m_look;
    QColor m_accent;
    qreal m_symbolOpacity = 1;
};

} // namespace orvesa
