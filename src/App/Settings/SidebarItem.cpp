#include "App/Settings/SidebarItem.h"

#include "Core/Localization.h"
#include "UI/Capsule.h"
#include "UI/ControlPainting.h"
#include "UI/GradientTile.h"
#include "UI/Style.h"

#include <QKeyEvent>

#include <algorithm>

namespace orvesa {

namespace {
constexpr int horizontalPadding = 10;
constexpr int verticalPadding = 7;
constexpr int tileGap = 10;
constexpr int badgeGap = 6;
constexpr int badgeDrop = 3; ///< between the title and a badge below it
constexpr int radius = 9;
constexpr int smallestPixelSize = 12;
constexpr int textLeft = horizontalPadding + Style::tileSize + tileGap;
} // namespace

SidebarItem::SidebarItem(SettingsSection section, std::function<void()> onSelect, QWidget *parent)
    : QAbstractButton(parent), m_section(section)
{
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [select = std::move(onSelect)] { select(); });
    refresh();
}

bool SidebarItem::showsNoKeyBadge() const
{
    return m_badge != nullptr && m_badge->isVisibleTo(this);
}

void SidebarItem::setSelected(bool isSelected)
{
    if (isSelected != isChecked()) {
        setChecked(isSelected);
        placeBadge();
    }
}

void SidebarItem::setShowsNoKeyBadge(bool showsBadge)
{
    if (showsBadge == showsNoKeyBadge()) {
        return;
    }
    if (m_badge == nullptr) {
        m_badge = new Capsule(this);
        m_badge->setText(Localization::string(L10nKey::noKeyBadge));
    }
    m_badge->setVisible(showsBadge);
    placeBadge();
}

void SidebarItem::refresh()
{
    setText(Localization::string(titleKey(m_section)));
    if (m_badge != nullptr) {
        m_badge->setText(Localization::string(L10nKey::noKeyBadge));
    }
    placeBadge();
}

QFont SidebarItem::titleFont(bool isSelected) const
{
    QFont font = Style::controlFont();
    font.setWeight(isSelected ? QFont::DemiBold : QFont::Normal);
    return font;
}

bool SidebarItem::badgeStandsBesideTitle() const
{
    const int title = QFontMetrics(titleFont(true)).horizontalAdvance(text());
    return textLeft + title + badgeGap + m_badge->sizeHint().width() + horizontalPadding <= width();
}

QSize SidebarItem::sizeHint() const
{
    int content = std::max(Style::tileSize, QFontMetrics(titleFont(true)).height());
    if (showsNoKeyBadge() && !badgeStandsBesideTitle()) {
        content = std::max(content, QFontMetrics(titleFont(true)).height() + badgeDrop + m_badge->sizeHint().height());
    }
    return {textLeft + horizontalPadding, content + 2 * verticalPadding};
}

void SidebarItem::placeBadge()
{
    updateGeometry();
    update();
    if (m_badge == nullptr) {
        return;
    }
    const QSize size = m_badge->sizeHint();
    if (badgeStandsBesideTitle()) {
        m_badge->setGeometry(width() - horizontalPadding - size.width(), (height() - size.height()) / 2, size.width(),
                             size.height());
    } else {
        const int content = QFontMetrics(titleFont(true)).height() + badgeDrop + size.height();
        const int bottom = (sizeHint().height() + content) / 2;
        m_badge->setGeometry(textLeft, bottom - size.height(), size.width(), size.height());
    }
}

void SidebarItem::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked() || underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, isChecked() ? 44 : isDown() ? 32 : 18));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    if (hasFocus()) {
        constexpr qreal width = 2;
        painter.setPen(QPen(QColor(255, 255, 255, 190), width));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2),
                                radius - width / 2, radius - width / 2);
    }
    GradientTile::paint(painter,
                        QRectF(horizontalPadding, (height() - Style::tileSize) / 2.0, Style::tileSize, Style::tileSize),
                        symbolName(m_section), iconGradient(m_section));
    const bool stacked = showsNoKeyBadge() && !badgeStandsBesideTitle();
    const QFontMetrics metrics(titleFont(true));
    const int top = stacked ? m_badge->y() - badgeDrop - metrics.height() : 0;
    const int textHeight = stacked ? metrics.height() : height();
    const int right = showsNoKeyBadge() && !stacked ? m_badge->x() - badgeGap : width() - horizontalPadding;
    painter.setFont(Style::fitting(titleFont(isChecked()), text(), right - textLeft, smallestPixelSize));
    painter.setPen(Qt::white);
    painter.drawText(QRect(textLeft, top, right - textLeft, textHeight), Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text(), Qt::ElideRight, right - textLeft + 1));
}

void SidebarItem::resizeEvent(QResizeEvent *event)
{
    placeBadge();
    QAbstractButton::resizeEvent(event);
}

void SidebarItem::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void SidebarItem::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void SidebarItem::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace orvesa
