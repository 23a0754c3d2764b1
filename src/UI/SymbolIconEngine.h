#pragma once

// Draws a symbol of the program's as an icon, sharp at whatever size and scale the desktop asks for. Main thread.

#include <QColor>
#include <QIconEngine>

namespace orvesa {

class SymbolIconEngine final : public QIconEngine {
public:
    /// `themeName` is what a tray of another program may look up in the desktop's icon theme instead, and then colours
    /// itself; empty for none.
    SymbolIconEngine(QString symbol, const QColor &color, QString themeName = {});

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QString iconName() override { return m_themeName; }
    bool isNull() override { return false; }
    QIconEngine *clone() const override;

private:
    QString m_symbol;
    QColor m_color;
    QString m_themeName;
};

} // namespace orvesa
