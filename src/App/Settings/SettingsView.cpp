#include "App/Settings/SettingsView.h"

#include "App/Settings/GeneralSettingsView.h"
#include "App/Settings/PromptsSettingsView.h"
#include "App/Settings/ProvidersSettingsView.h"
#include "App/Settings/SettingsSidebar.h"
#include "App/Settings/ShortcutsSettingsView.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/InterfaceFonts.h"
#include "UI/PlainLabel.h"
#include "UI/SlimScrollBar.h"
#include "UI/Style.h"
#include "UI/WrappingLabel.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QWindow>

namespace orvesa {

namespace {
constexpr int pagePadding = 26;
constexpr int headerSpacing = 2;
} // namespace

SettingsView::SettingsView(SettingsServices services, ProviderKeyStatus &keyStatus, QWidget *parent)
    : QWidget(parent), m_services(services), m_keyStatus(keyStatus),
      m_sidebar(new SettingsSidebar(
          m_services.settings, keyStatus, [this](SettingsSection section) { setSelection(section); }, this)),
      m_scrollView(new QScrollArea(this))
{
    setFixedSize(viewWidth, viewHeight);
    setAutoFillBackground(true);
    // Whoever opens the window with the mouse sees no focus ring until the Tab key asks for one. No focus by policy,
    // which would take it also at clicks on the controls that leave the focus, and with it a recording, where it is.
    setFocus(Qt::OtherFocusReason);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_sidebar->setFixedWidth(sidebarWidth);
    row->addWidget(m_sidebar);
    row->addWidget(m_scrollView, 1);
    buildScrollView();
    refreshColors();
    // Before the page's own connections, whose widgets measure their new texts.
    connect(&m_services.settings, &SettingsStore::appLanguageChanged, this, &SettingsView::refreshTexts);
    showPage();
    connect(&m_services.settings, &SettingsStore::themeChanged, this, &SettingsView::refreshColors);
}

void SettingsView::buildScrollView()
{
    m_scrollView->setFrameShape(QFrame::NoFrame);
    m_scrollView->setWidgetResizable(true);
    m_scrollView->setFocusPolicy(Qt::NoFocus);
    m_scrollView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollView->setVerticalScrollBar(new SlimScrollBar(m_scrollView));
    auto *document = new QWidget;
    document->setFixedWidth(viewWidth - sidebarWidth);
    m_column = new QVBoxLayout(document);
    m_column->setContentsMargins(pagePadding, pagePadding, pagePadding, pagePadding);
    m_column->setSpacing(Style::contentMargin);
    auto *header = new QVBoxLayout;
    header->setSpacing(headerSpacing);
    m_title = makePlainLabel(Style::pageTitleFont(), document);
    m_subtitle = new WrappingLabel(Style::controlFont(), document);
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    header->addWidget(m_title);
    header->addWidget(m_subtitle);
    m_column->addLayout(header);
    m_scrollView->setWidget(document);
}

void SettingsView::setSelection(SettingsSection section)
{
    if (section != m_selection) {
        m_selection = section;
        showPage();
    }
}

QWidget *SettingsView::makePage(SettingsSection section)
{
    switch (section) {
    case SettingsSection::general:
        return new GeneralSettingsView(m_services, m_scrollView->widget());
    case SettingsSection::shortcuts:
        return new ShortcutsSettingsView(m_services, m_scrollView->widget());
    case SettingsSection::prompts:
        return new PromptsSettingsView(m_services, m_scrollView->widget());
    case SettingsSection::providers:
        break;
    }
    return new ProvidersSettingsView(m_services, m_keyStatus, m_scrollView->widget());
}

void SettingsView::showPage()
{
    if (m_page != nullptr) {
        if (m_page->isAncestorOf(focusWidget())) {
            // Whoever has clicked the other section was typing on this page: Qt would give the focus, with its ring, to
            // the next control.
            setFocus(Qt::OtherFocusReason);
        }
        m_column->removeWidget(m_page);
        m_page->hide();
        // One of its buttons may be on the call stack.
        m_page->deleteLater();
    }
    m_sidebar->setSelection(m_selection);
    refreshTexts();
    m_page = makePage(m_selection);
    m_column->addWidget(m_page, 1);
    m_page->show();
    m_scrollView->verticalScrollBar()->setValue(0);
    // Layouts inside layouts tell each other of their sizes by events: what is shown first is to be in its place.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

void SettingsView::refreshTexts()
{
    InterfaceFonts::follow(*this);
    m_title->setText(Localization::string(titleKey(m_selection)));
    m_subtitle->setText(Localization::string(subtitleKey(m_selection)));
}

void SettingsView::refreshColors()
{
    const QColor accentColor = Style::color(accent(m_services.settings.theme()));
    setPalette(Style::palette(Style::appearance(QGuiApplication::palette()), accentColor));
}

void SettingsView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange) {
        refreshColors();
    }
    QWidget::changeEvent(event);
}

void SettingsView::mousePressEvent(QMouseEvent *event)
{
    // A click on the background, which is whatever takes no clicks itself, ends what was being typed or recorded; and
    // the window can be dragged by it.
    setFocus(Qt::MouseFocusReason);
    QWindow *handle = window()->windowHandle();
    if (event->button() == Qt::LeftButton && handle != nullptr) {
        handle->startSystemMove();
    }
    QWidget::mousePressEvent(event);
}

} // namespace orvesa
