#pragma once

// One colour theme to choose: its gradient over its name. The arrow keys move the choice among the swatches of a row.
// Main thread only.

#include "Models/AppTheme.h"

#include <QRadioButton>

namespace orvesa {

class ThemeSwatch final : public QRadioButton {
    Q_OBJECT

public:
    explicit ThemeSwatch(AppTheme theme, QWidget *parent = nullptr);

    [[nodiscard]] AppTheme theme() const { return m_theme; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] bool hitButton(const QPoint &position) const override;

private:
    AppTheme m_theme;
};

} // namespace orvesa
