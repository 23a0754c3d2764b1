#pragma once

// The panel's title: one line of white text with a soft shadow, shortened at its end when there is no room for it.
// Screen readers get the whole title.

#include <QWidget>

namespace orvesa {

class PanelTitle final : public QWidget {
    Q_OBJECT

public:
    explicit PanelTitle(QWidget *parent = nullptr);

    void setText(const QString &text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
};

} // namespace orvesa
