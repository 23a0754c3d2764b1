#pragma once

// The status item's image: a symbol in a colour that can be read on the tray that shows it, light or dark.
//
// A tray that draws the icon itself gets the name of a symbolic icon, which it colours as it likes, where one is
// installed. In a tray that embeds our window, the colour follows what lies around the symbol, looked at when the tray
// has it painted and at no other time. Main thread; the item must outlive it.

#include <QColor>
#include <QObject>

class QSystemTrayIcon;

namespace orvesa {

class StatusItemIcon final : public QObject {
    Q_OBJECT

public:
    explicit StatusItemIcon(QSystemTrayIcon &item);

    /// White on dark backgrounds, nearly black on light ones.
    [[nodiscard]] static QColor colorOn(const QColor &background);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void show(const QColor &color);
    void follow();

    QSystemTrayIcon &m_item;
    QColor m_color;
    bool m_followScheduled = false;
};

} // namespace orvesa
