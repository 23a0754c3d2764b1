#pragma once

// A hairline between sections. Main thread.

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
