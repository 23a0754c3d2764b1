#pragma once

// A menu-style picker in the look of a field: the current choice and a chevron. Main thread only.
//
// It never changes by the wheel, which is there to scroll the page.

#include <QComboBox>
#include <QStringList>

namespace orvesa {

class Picker final : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget *parent = nullptr);

    /// Shows these texts and that choice. The list is left alone when the texts are the same, since it may be open.
    void setChoices(const QStringList &choices, int current);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] QFont choiceFont(int index) const;

    QStringList m_choices;
};

} // namespace orvesa
