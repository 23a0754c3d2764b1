#include "App/StatusItemIcon.h"

#include "Models/AppTheme.h"
#include "UI/Style.h"
#include "UI/SymbolIconEngine.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QScreen>
#include <QStandardPaths>
#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// The window that a tray embeds is Qt's own and has no other mark.
bool isEmbeddedIcon(const QObject *object)
{
    return object->isWidgetType() && object->inherits("QSystemTrayIconSys");
}

/// The name of the installed icon: nothing, when the program runs from where it was built. Its file in the theme that
/// stands behind every other is looked for, since to ask the theme means to read all of it, at every start.
QString symbolicIcon()
{
    const QString name = QGuiApplication::desktopFileName() + u"-symbolic"_s;
    const QString file = u"icons/hicolor/symbolic/apps/%1.svg"_s.arg(name);
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty() ? QString() : name;
}

} // namespace

StatusItemIcon::StatusItemIcon(QSystemTrayIcon &item) : m_item(item)
{
    // Until it is known what is around it: one colour that shows on both.
    show(Style::color(accent(AppTheme::violet)));
    qApp->installEventFilter(this);
}

QColor StatusItemIcon::colorOn(const QColor &background)
{
    const QColor light(0xff, 0xff, 0xff);
    const QColor dark(0x24, 0x24, 0x28);
    // Of equal distance in what the eye sees, not in numbers.
    constexpr int middleGray = 0x80;
    return qGray(background.rgb()) < middleGray ? light : dark;
}

void StatusItemIcon::show(const QColor &color)
{
    m_color = color;
    QIcon icon(new SymbolIconEngine(u"character.bubble"_s, color, symbolicIcon()));
    icon.setIsMask(true);
    m_item.setIcon(icon);
}

bool StatusItemIcon::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_followScheduled && isEmbeddedIcon(watched)) {
        m_followScheduled = true;
        QMetaObject::invokeMethod(
            this, [this] { follow(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void StatusItemIcon::follow()
{
    m_followScheduled = false;
    const QRect place = m_item.geometry();
    QScreen *screen = QGuiApplication::screenAt(place.center());
    if (place.isEmpty() || screen == nullptr) {
        return;
    }
    // The symbol leaves its corners free.
    const QPoint corner = place.topLeft() - screen->geometry().topLeft();
    const QImage sample = screen->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
    if (sample.isNull()) {
        return;
    }
    if (const QColor color = colorOn(sample.pixelColor(0, 0)); color != m_color) {
        show(color);
    }
}

} // namespace orvesa
