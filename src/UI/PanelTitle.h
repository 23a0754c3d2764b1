#pragma once

// The panel's title: one line of white text with a soft shadow. A long one gets a slightly smaller font first, and an
// ellipsis at its end when that is not enough. Screen readers get the whole title. Main thread.

#include <QWidget>

namespace orvesa {

class PanelTitle final : public QWidget {
    Q_OBJECT

public:
    explicit PanelTitle(QWidget *parent = nullptr);

    void setText(const QString &text);
    /// Whether it ends in an ellipsis at the present width.
    [[nodiscard]] bool isShortened() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QFont fittingFont() const;

    QString m_text;
};

} // namespace orvesa
