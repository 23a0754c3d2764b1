#include "UI/KeyComboRecorderView.h"

#include "Core/HotKeyRecordingState.h"
#include "Core/Localization.h"
#include "Models/AppTheme.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 escapeKeyCode = 53;
constexpr int smallestWidth = 112;
constexpr int horizontalPadding = 12;
constexpr float restingRing = 0.45F;
constexpr float listeningRing = 0.32F;
constexpr float listeningTint = 0.08F;
constexpr double textContrast = 4.5;
constexpr double shapeContrast = 3;

KeyPress keyPress(const MonitoredKeyPress &press)
{
    return {press.keyCode, KeyModifiers::fromInt(press.modifierFlags), press.characters};
}

bool isPlainEscape(const KeyPress &press)
{
    constexpr auto held = KeyModifier::shift | KeyModifier::control | KeyModifier::option | KeyModifier::command;
    return press.keyCode == escapeKeyCode && !(press.modifiers & held);
}

QColor mixed(const QColor &first, const QColor &second, float shareOfFirst)
{
    const auto mix = [shareOfFirst](float a, float b) { return a * shareOfFirst + b * (1 - shareOfFirst); };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

} // namespace

KeyComboRecorderView::KeyComboRecorderView(Binding combo, QString placeholder, Validate validate, Feedback onFeedback,
                                           HotKeyRecordingState &state, KeyMonitorPort &monitor, QWidget *parent)
    : QAbstractButton(parent), m_combo(std::move(combo)), m_placeholder(std::move(placeholder)),
      m_validate(std::move(validate)), m_onFeedback(std::move(onFeedback)), m_state(state), m_monitor(monitor),
      m_accent(Style::color(accent(AppTheme::violet)))
{
    // A click on a second control must not take the focus, and with it the recording, from the first.
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(Style::controlFont());
    connect(this, &QAbstractButton::clicked, this, &KeyComboRecorderView::toggleRecording);
    refresh();
}

KeyComboRecorderView::~KeyComboRecorderView()
{
    stopRecording();
}

QString KeyComboRecorderView::shownText() const
{
    if (m_isRecording) {
        return Localization::string(L10nKey::typeShortcut);
    }
    const std::optional<KeyCombo> combo = m_combo.read();
    return combo ? combo->displayText() : m_placeholder;
}

void KeyComboRecorderView::refresh()
{
    // Screen readers hear of every assignment, also of an equal text.
    const QString shown = shownText();
    const QString name = m_subject.isEmpty() ? shown : m_subject + u", "_s + shown;
    if (name != accessibleName()) {
        setAccessibleName(name);
    }
    const QString help = Localization::string(L10nKey::recorderHelp);
    if (help != toolTip()) {
        setToolTip(help);
        setAccessibleDescription(help);
    }
    updateGeometry();
    update();
}

void KeyComboRecorderView::setPlaceholder(const QString &placeholder)
{
    m_placeholder = placeholder;
    refresh();
}

void KeyComboRecorderView::setSubject(const QString &subject)
{
    m_subject = subject;
    refresh();
}

void KeyComboRecorderView::setAccent(const QColor &accent)
{
    m_accent = accent;
    update();
}

QSize KeyComboRecorderView::sizeHint() const
{
    // As wide in every state, so that nothing around it moves when it begins to listen.
    const QFontMetrics metrics(font());
    const int listening = metrics.horizontalAdvance(Localization::string(L10nKey::typeShortcut));
    const int width = std::max(listening, metrics.horizontalAdvance(shownText())) + 2 * horizontalPadding;
    return {std::max(width, smallestWidth) + 2 * outset(), Style::buttonHeight + 2 * outset()};
}

QSize KeyComboRecorderView::minimumSizeHint() const
{
    return sizeHint();
}

void KeyComboRecorderView::toggleRecording()
{
    if (m_isRecording) {
        stopRecording();
    } else if (!m_state.isRecording()) {
        startRecording();
    }
}

void KeyComboRecorderView::startRecording()
{
    m_isRecording = true;
    m_state.beginRecording();
    sendFeedback(std::nullopt);
    window()->activateWindow();
    setFocus(Qt::OtherFocusReason);
    m_eventMonitor = m_monitor.addMonitor([this](const MonitoredKeyPress &press) { take(press); });
    m_shortcuts = connect(&m_state, &HotKeyRecordingState::shortcutTaken, this, &KeyComboRecorderView::consider);
    refresh();
}

void KeyComboRecorderView::stopRecording()
{
    if (!m_isRecording) {
        return;
    }
    m_isRecording = false;
    disconnect(m_shortcuts);
    m_monitor.removeMonitor(std::exchange(m_eventMonitor, 0));
    m_state.endRecording();
    refresh();
}

void KeyComboRecorderView::take(const MonitoredKeyPress &monitored)
{
    const KeyPress press = keyPress(monitored);
    if (isPlainEscape(press)) {
        stopRecording();
    } else if (const std::optional<KeyCombo> candidate = KeyCombo::fromKeyPress(press)) {
        consider(*candidate);
    } else {
        sendFeedback(Localization::string(L10nKey::feedbackNeedModifier));
    }
}

void KeyComboRecorderView::consider(const KeyCombo &candidate)
{
    if (const std::optional<QString> refusal = m_validate ? m_validate(candidate) : std::nullopt) {
        sendFeedback(refusal);
        return;
    }
    // Writing changes settings, and who shows those may make its controls anew.
    const QPointer<KeyComboRecorderView> self(this);
    m_combo.write(candidate);
    if (self) {
        sendFeedback(std::nullopt);
    }
    if (self) {
        stopRecording();
    }
}

void KeyComboRecorderView::sendFeedback(const std::optional<QString> &message) const
{
    if (m_onFeedback) {
        const Feedback receiver = m_onFeedback;
        receiver(message);
    }
}

bool KeyComboRecorderView::event(QEvent *event)
{
    if (event->type() == QEvent::WindowDeactivate) {
        stopRecording();
    }
    return QAbstractButton::event(event);
}

void KeyComboRecorderView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        stopRecording();
    }
    QAbstractButton::changeEvent(event);
}

void KeyComboRecorderView::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void KeyComboRecorderView::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

void KeyComboRecorderView::focusOutEvent(QFocusEvent *event)
{
    stopRecording();
    QAbstractButton::focusOutEvent(event);
}

void KeyComboRecorderView::hideEvent(QHideEvent *event)
{
    stopRecording();
    QAbstractButton::hideEvent(event);
}

void KeyComboRecorderView::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void KeyComboRecorderView::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Style::disabledOpacity);
    const QRectF control = QRectF(rect()).adjusted(outset(), outset(), -outset(), -outset());
    if (m_isRecording || hasFocus()) {
        painter.setPen(QPen(withAlpha(m_accent, m_isRecording ? listeningRing : restingRing), Style::focusRingWidth));
        const qreal half = Style::focusRingWidth / 2.0;
        painter.drawRoundedRect(control.adjusted(-half, -half, half, half), Style::controlRadius + half,
                                Style::controlRadius + half);
    }
    const QColor fill = isDown() ? colors.line : underMouse() && !m_isRecording ? colors.hover : colors.field;
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const QRectF frame = control.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(frame, Style::controlRadius, Style::controlRadius);
    painter.setPen(QPen(m_isRecording ? m_accent
                        : hasFocus()  ? Style::readable(m_accent, colors.card, shapeContrast)
                                      : colors.fieldLine,
                        1));
    painter.setBrush(m_isRecording ? QBrush(withAlpha(m_accent, listeningTint)) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(frame, Style::controlRadius, Style::controlRadius);
    painter.setPen(m_isRecording ? Style::readable(m_accent, mixed(m_accent, colors.field, listeningTint), textContrast)
                   : m_combo.read() ? colors.text
                                    : colors.secondaryText);
    const QRectF inner = control.adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    painter.drawText(
        inner, Qt::AlignCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(shownText(), Qt::ElideRight, static_cast<int>(inner.width()) + 1));
}

} // namespace orvesa
