#pragma once

// The container of every page's content: an optional title over whatever is added, on a rounded background.
//
// Controls draw themselves inside a margin for their focus ring. What is added as a control therefore reaches that far
// into the card's padding, so that what is seen of it stands on the padding's edge; texts stand there by themselves.
// Main thread only.

#include <QWidget>

#include <optional>

class QLabel;
class QVBoxLayout;

namespace orvesa {

class SettingsCard : public QWidget {
    Q_OBJECT

public:
    explicit SettingsCard(QWidget *parent = nullptr);

    void setTitle(const std::optional<QString> &title);
    /// A row that ends in a control: the caption on the left, the control on the right.
    void addRow(QLabel *caption, QWidget *control);
    void addControl(QWidget *control);
    void addText(QWidget *text);
    void addSpacing(int height);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_title;
    QVBoxLayout *m_content;
};

} // namespace orvesa
