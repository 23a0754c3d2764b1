#pragma once

// A menu-style picker in the look of a field: the current choice and a chevron. Main thread only.
//
// It never changes by the wheel, which is there to scroll the page.

#include "UI/TextLanguage.h"

#include <QComboBox>
#include <QList>
#include <QStringList>

namespace orvesa {

class Picker final : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget *parent = nullptr);

    /// Shows these texts and that choice. The list is left alone when the texts are the same, since it may be open.
    /// `languages` are those of the texts, one each; without them a text's characters tell.
    void setChoices(const QStringList &choices, int current, const QList<TextLanguage> &languages = {});

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] QFont choiceFont(int index) const;

    QStringList m_choices;
    QList<TextLanguage> m_languages;
};

} // namespace orvesa
