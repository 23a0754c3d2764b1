#include "App/Settings/HotKeyRow.h"

#include "App/Settings/ShortcutsSettingsViewModel.h"
#include "Core/SettingsStore.h"
#include "UI/GradientTile.h"
#include "UI/HotKeyRecorderView.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"
#include "UI/WrappingLabel.h"

#include <QEvent>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr int outset = Style::focusRingWidth;
constexpr int verticalPadding = 6;
constexpr qreal faintOpacity = 0.25;
} // namespace

HotKeyRow::HotKeyRow(HotKeyAction action, const SettingsServices &services, ShortcutsSettingsViewModel &model,
                     const Feedback &onFeedback, QWidget *parent)
    : QWidget(parent), m_action(action), m_model(model), m_title(makePlainLabel(Style::controlFont(), this)),
      m_subtitle(new WrappingLabel(Style::captionFont(), this)),
      m_recorder(new HotKeyRecorderView(action, services.settings, onFeedback, services.recordingState,
                                        services.keyMonitor, this)),
      m_reset(new SymbolButton(u"arrow.uturn.backward.circle.fill"_s, SymbolButton::Look::borderless, this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(outset, verticalPadding, 0, verticalPadding);
    row->setSpacing(Style::spacing);
    row->addWidget(new GradientTile(ShortcutsSettingsViewModel::symbolName(action), iconGradient(action), this));
    row->addSpacing(2);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addStretch();
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);
    texts->addStretch();
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    row->addLayout(texts, 1);
    row->addSpacing(Style::unit);
    row->addWidget(m_recorder);
    row->addSpacing(-outset);
    row->addWidget(m_reset);

    connect(m_reset, &QAbstractButton::clicked, this, [this] { m_model.reset(m_action); });
    connect(&services.settings, &SettingsStore::hotKeyOverridesChanged, this, &HotKeyRow::refresh);
    connect(&services.settings, &SettingsStore::appLanguageChanged, this, &HotKeyRow::refresh);
    refresh();
}

void HotKeyRow::refresh()
{
    m_title->setText(ShortcutsSettingsViewModel::title(m_action));
    m_subtitle->setText(ShortcutsSettingsViewModel::subtitle(m_action));
    m_reset->setDescription(ShortcutsSettingsViewModel::resetHelp(m_action));
    m_reset->setAccessibleDescription(m_title->text());
    m_reset->setSymbolOpacity(m_model.isCustomized(m_action) ? 1 : faintOpacity);
    m_recorder->setAccent(palette().color(QPalette::Link));
}

void HotKeyRow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && m_reset != nullptr) {
        m_recorder->setAccent(palette().color(QPalette::Link));
    }
    QWidget::changeEvent(event);
}

} // namespace orvesa
