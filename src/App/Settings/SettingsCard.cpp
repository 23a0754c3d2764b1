#include "App/Settings/SettingsCard.h"

#include "UI/ControlPainting.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"

#include <QVBoxLayout>

namespace orvesa {

namespace {
constexpr int outset = Style::focusRingWidth;
constexpr int spacing = 3 * Style::unit; ///< between what is seen of two rows
constexpr int smallestRow = 28;
} // namespace

SettingsCard::SettingsCard(QWidget *parent)
    : QWidget(parent), m_title(makePlainLabel(Style::headlineFont(), this)), m_content(new QVBoxLayout(this))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    constexpr int side = Style::cardPadding - outset;
    m_content->setContentsMargins(side, Style::cardPadding, side, Style::cardPadding);
    m_content->setSpacing(spacing - 2 * outset);
    m_title->setContentsMargins(outset, 0, outset, outset);
    m_title->hide();
    m_content->addWidget(m_title);
}

void SettingsCard::setTitle(const std::optional<QString> &title)
{
    m_title->setText(title.value_or(QString()));
    m_title->setVisible(title.has_value());
}

void SettingsCard::addRow(QLabel *caption, QWidget *control)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(outset, 0, 0, 0);
    row->setSpacing(spacing);
    caption->setMinimumHeight(smallestRow);
    row->addWidget(caption);
    row->addStretch();
    row->addWidget(control);
    m_content->addLayout(row);
}

void SettingsCard::addControl(QWidget *control)
{
    m_content->addWidget(control);
}

void SettingsCard::addText(QWidget *text)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(outset, outset, outset, outset);
    row->addWidget(text);
    m_content->addLayout(row);
}

void SettingsCard::addSpacing(int height)
{
    m_content->addSpacing(height);
}

void SettingsCard::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    QPainter painter(this);
    ControlPainting::paintFrame(painter, rect(), Style::cardRadius, colors.card, colors.line);
}

} // namespace orvesa
