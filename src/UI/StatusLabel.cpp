#include "UI/StatusLabel.h"

#include "UI/PlainLabel.h"
#include "UI/Style.h"
#include "UI/Symbols.h"
#include "UI/WrappingLabel.h"

#include <QEvent>
#include <QHBoxLayout>

#include <algorithm>

namespace orvesa {

namespace {

constexpr int symbolSize = 14;
constexpr int gap = 6;
/// Far above what any service sends in an error, which is cut to 500 bytes.
constexpr qsizetype longest = 4000;

QColor toneColor(StatusLabel::Tone tone, const Style::Colors &colors)
{
    switch (tone) {
    case StatusLabel::Tone::success:
        return colors.success;
    case StatusLabel::Tone::warning:
        return colors.warning;
    case StatusLabel::Tone::failure:
        return colors.error;
    case StatusLabel::Tone::neutral:
        break;
    }
    return colors.secondaryText;
}

} // namespace

StatusLabel::StatusLabel(const QFont &font, QWidget *parent, QString symbol)
    : QWidget(parent), m_symbol(std::move(symbol)), m_image(makePlainLabel(font, this)),
      m_text(new WrappingLabel(font, this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(m_image, 0, Qt::AlignTop);
    row->addWidget(m_text, 1);
    m_image->setVisible(!m_symbol.isEmpty());
    hide();
}

void StatusLabel::setMessage(const std::optional<QString> &text, Tone tone)
{
    m_tone = tone;
    m_text->setText(text.value_or(QString()).left(longest));
    refreshColors();
    setVisible(text.has_value());
}

void StatusLabel::setSymbol(const QString &symbol)
{
    m_symbol = symbol;
    m_image->setVisible(!symbol.isEmpty());
    refreshColors();
}

void StatusLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && m_text != nullptr) {
        refreshColors();
    }
    QWidget::changeEvent(event);
}

void StatusLabel::refreshColors()
{
    const QColor color = toneColor(m_tone, Style::colors(palette()));
    m_image->setFixedSize(symbolSize, std::max(symbolSize, m_text->fontMetrics().height()));
    setLabelColor(*m_text, color);
    if (!m_symbol.isEmpty()) {
        m_image->setPixmap(Symbols::pixmap(m_symbol, color, symbolSize, devicePixelRatioF()));
    }
}

} // namespace orvesa
