#pragma once

// A white symbol on a small rounded tile with a gradient. Main thread only.

#include "Models/SRGBColor.h"

#include <QWidget>

class QPainter;

namespace orvesa {

class GradientTile final : public QWidget {
    Q_OBJECT

public:
    GradientTile(QString symbol, const SRGBGradient &gradient, QWidget *parent = nullptr);

    /// The same for whoever paints several things in one widget.
    static void paint(QPainter &painter, const QRectF &area, const QString &symbol, const SRGBGradient &gradient);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    SRGBGradient m_gradient;
};

} // namespace orvesa
