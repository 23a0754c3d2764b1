#pragma once

// A hairline between sections.

#include <QWidget>

namespace orvesa {

class Divider final : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace orvesa
