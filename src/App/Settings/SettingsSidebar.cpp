#include "App/Settings/SettingsSidebar.h"

#include "App/BuildIdentity.h"
#include "App/Settings/ProviderKeyStatus.h"
#include "App/Settings/SidebarItem.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/InterfaceFonts.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"

#include <QPainter>
#include <QShowEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr int padding = 12;
constexpr int textInset = 8;
constexpr int headerTop = 18; ///< puts the header on the line of the page's title
constexpr QColor versionColor(255, 255, 255, 175);

QFont headerFont()
{
    QFont font = Style::bodyFont();
    font.setPixelSize(font.pixelSize() + 1);
    font.setWeight(QFont::Bold);
    return font;
}

} // namespace

SettingsSidebar::SettingsSidebar(const SettingsStore &settings, ProviderKeyStatus &keyStatus,
                                 std::function<void(SettingsSection)> onSelect, QWidget *parent)
    : QWidget(parent), m_settings(settings), m_keyStatus(keyStatus), m_header(makePlainLabel(headerFont(), this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(Style::unit);
    m_header->setContentsMargins(textInset, headerTop, textInset, Style::spacing);
    setLabelColor(*m_header, Qt::white);
    column->addWidget(m_header);
    for (const SettingsSection section : allSettingsSections) {
        m_items.push_back(new SidebarItem(
            section, [onSelect, section] { onSelect(section); }, this));
        column->addWidget(m_items.back());
    }
    column->addStretch();
    QLabel *version = makePlainLabel(Style::captionFont(), this);
    version->setText(u'v' + QStringView(BuildIdentity::version).toString());
    version->setContentsMargins(textInset, 0, textInset, 2);
    setLabelColor(*version, versionColor);
    column->addWidget(version);

    refreshTexts();
    refreshBadge();
    connect(&settings, &SettingsStore::appLanguageChanged, this, &SettingsSidebar::refreshTexts);
    connect(&settings, &SettingsStore::themeChanged, this, qOverload<>(&QWidget::update));
    connect(&keyStatus, &ProviderKeyStatus::changed, this, &SettingsSidebar::refreshBadge);
}

void SettingsSidebar::setSelection(SettingsSection section)
{
    for (SidebarItem *item : m_items) {
        item->setSelected(item->section() == section);
    }
}

SidebarItem &SettingsSidebar::item(SettingsSection section) const
{
    return *m_items.at(static_cast<std::size_t>(section));
}

void SettingsSidebar::refreshTexts()
{
    InterfaceFonts::follow(*this);
    m_header->setText(Localization::string(L10nKey::sidebarSettings));
    for (SidebarItem *item : m_items) {
        item->refresh();
    }
}

void SettingsSidebar::refreshBadge()
{
    item(SettingsSection::providers).setShowsNoKeyBadge(m_keyStatus.hasNoKey());
}

void SettingsSidebar::paintEvent(QPaintEvent *)
{
    const SRGBGradient colors = sidebarGradient(m_settings.theme());
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, Style::color(colors.start));
    gradient.setColorAt(1, Style::color(colors.end));
    QPainter(this).fillRect(rect(), gradient);
}

void SettingsSidebar::showEvent(QShowEvent *event)
{
    // The window's first appearance follows the status' own first look at the key store.
    if (!event->spontaneous() && !m_keyStatus.isRefreshing()) {
        m_keyStatus.refresh();
    }
    QWidget::showEvent(event);
}

} // namespace orvesa
