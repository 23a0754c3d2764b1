#include "UI/FloatingResultView.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/AdaptiveTextScrollView.h"
#include "UI/Divider.h"
#include "UI/InterfaceFonts.h"
#include "UI/LoadingView.h"
#include "UI/PanelHeader.h"
#include "UI/PlainLabel.h"
#include "UI/ResultMetrics.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"
#include "UI/Symbols.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// What an answer is written in when its characters do not tell: what was asked for.
TextLanguage languageOfAnswers(const FloatingResultViewModel &model)
{
    if (model.translationLanguage() == TargetLanguage::japanese || model.polishMode() == PolishMode::businessJapanese ||
        model.polishMode() == PolishMode::naturalJapanese) {
        return TextLanguage::japanese;
    }
    if (model.translationLanguage() == TargetLanguage::traditionalChinese ||
        model.polishMode() == PolishMode::traditionalChinese) {
        return TextLanguage::traditionalChinese;
    }
    return Style::interfaceLanguage();
}

} // namespace

FloatingResultView::FloatingResultView(FloatingResultViewModel &model, const SettingsStore &settings, QWidget *parent)
    : QWidget(parent), m_model(model), m_settings(settings), m_header(new PanelHeader(model, this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_header);

    // The focus rings of the buttons reach into the margins, the buttons themselves stand on the content's edges.
    constexpr int outset = SymbolButton::outset();
    auto *body = new QVBoxLayout;
    body->setContentsMargins(Style::contentMargin, Style::contentMargin - 2, Style::contentMargin, 0);
    body->setSpacing(Style::unit); // below a text, which keeps some room of its own at its end
    column->addLayout(body);
    buildSourceSection(*body);
    buildResultSection(*body);
    m_status = makePlainLabel(Style::statusFont(), this);
    m_status->setWordWrap(true);
    body->addWidget(m_status);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(Style::contentMargin - outset, Style::spacing - outset, Style::contentMargin - outset,
                                Style::contentMargin - outset);
    buildButtons(*buttons);
    column->addLayout(buttons);
    refreshColors();
}

void FloatingResultView::buildSourceSection(QVBoxLayout &body)
{
    m_sourceSection = new QWidget(this);
    auto *column = new QVBoxLayout(m_sourceSection);
    column->setContentsMargins(0, 0, 0, Style::sectionSpacing - Style::unit);
    column->setSpacing(Style::captionSpacing);
    m_sourceCaption = makePlainLabel(Style::captionFont(), m_sourceSection);
    m_source = new AdaptiveTextScrollView(m_sourceSection);
    column->addWidget(m_sourceCaption);
    column->addWidget(m_source);
    column->addWidget(new Divider(m_sourceSection));
    body.addWidget(m_sourceSection);
}

void FloatingResultView::buildResultSection(QVBoxLayout &body)
{
    auto *column = new QVBoxLayout;
    column->setSpacing(Style::captionSpacing);
    m_resultCaption = makePlainLabel(Style::captionFont(), this);
    m_loading = new LoadingView(this);
    m_result = new AdaptiveTextScrollView(this);
    m_failure = new QWidget(this);
    auto *failureRow = new QHBoxLayout(m_failure);
    failureRow->setContentsMargins(0, 0, 0, 0);
    failureRow->setSpacing(Style::spacing);
    m_failureSymbol = makePlainLabel(Style::bodyFont(), m_failure);
    m_failureSymbol->setFixedWidth(Style::symbolSize);
    m_failureText = new AdaptiveTextScrollView(m_failure);
    failureRow->addWidget(m_failureSymbol, 0, Qt::AlignTop);
    failureRow->addWidget(m_failureText, 1);
    column->addWidget(m_resultCaption);
    column->addWidget(m_loading);
    column->addWidget(m_result);
    column->addWidget(m_failure);
    body.addLayout(column);
}

void FloatingResultView::buildButtons(QHBoxLayout &row)
{
    m_copy = new SymbolButton(u"doc.on.doc"_s, SymbolButton::Look::prominent, this);
    m_retry = new SymbolButton(u"arrow.clockwise"_s, SymbolButton::Look::bordered, this);
    row.addWidget(m_copy);
    row.addStretch();
    row.addWidget(m_retry);

    connect(m_copy, &QAbstractButton::clicked, this, [this] {
        if (m_model.onCopy) {
            m_model.onCopy();
        }
    });
    connect(m_retry, &QAbstractButton::clicked, this, [this] {
        if (m_model.onRetry) {
            m_model.onRetry();
        }
    });
}

void FloatingResultView::refresh(int visibleScreenHeight)
{
    const int width = ResultMetrics::panelWidth(m_model.sourceText(), m_model.phase());
    const int textWidth = width - ResultMetrics::textInset;
    setFixedWidth(width);
    refreshTexts();
    m_header->refresh(); // its title is drawn in a language of its own
    refreshColors();

    m_sourceSection->setVisible(!m_model.sourceText().isEmpty());
    if (!m_model.sourceText().isEmpty()) {
        m_source->setContent(m_model.sourceText(), textWidth, ResultMetrics::maximumSourceHeight(visibleScreenHeight),
                             Style::interfaceLanguage());
    }
    refreshResult(textWidth, ResultMetrics::maximumResultHeight(visibleScreenHeight));
    m_status->setVisible(m_model.statusMessage().has_value());
    m_status->setText(m_model.statusMessage().value_or(QString()));
    update();
}

void FloatingResultView::refreshResult(int textWidth, int maximumHeight)
{
    const auto *success = std::get_if<FloatingResultViewModel::Success>(&m_model.phase());
    const auto *failure = std::get_if<FloatingResultViewModel::Failure>(&m_model.phase());
    const bool loading = success == nullptr && failure == nullptr;
    m_loading->setVisible(loading);
    m_result->setVisible(success != nullptr);
    m_failure->setVisible(failure != nullptr);
    if (success != nullptr) {
        m_result->setContent(success->text, textWidth, maximumHeight, languageOfAnswers(m_model));
    }
    if (failure != nullptr) {
        m_failureText->setContent(failure->message, textWidth - Style::symbolSize - Style::spacing, maximumHeight,
                                  Style::interfaceLanguage());
        m_failureSymbol->setFixedHeight(m_failureText->lineHeight());
    }
    m_copy->setEnabled(success != nullptr);
    m_retry->setEnabled(!loading);
}

void FloatingResultView::refreshTexts()
{
    if (const AppLanguage language = Localization::current(); language != m_textsLanguage) {
        m_textsLanguage = language;
        InterfaceFonts::follow(*this);
        const QString original = Localization::string(L10nKey::panelOriginal);
        const QString result = Localization::string(L10nKey::panelResult);
        m_sourceCaption->setText(original);
        m_source->setAccessibleName(original);
        m_resultCaption->setText(result);
        m_result->setAccessibleName(result);
        m_failureText->setAccessibleName(result);
    }
    m_copy->setDescription(Localization::string(L10nKey::panelCopyResult));
    m_retry->setDescription(Localization::string(L10nKey::panelRetry));
}

void FloatingResultView::refreshColors()
{
    const Style::Colors &colors = Style::colors(palette());
    const QColor accentColor = Style::color(accent(m_settings.theme()));
    setLabelColor(*m_sourceCaption, colors.secondaryText);
    setLabelColor(*m_resultCaption, colors.secondaryText);
    setLabelColor(*m_status, colors.secondaryText);
    m_source->setTextColor(colors.text);
    m_result->setTextColor(colors.text);
    m_failureText->setTextColor(colors.error);
    m_failureSymbol->setPixmap(
        Symbols::pixmap(u"exclamationmark.triangle.fill"_s, colors.error, Style::symbolSize, devicePixelRatioF()));
    m_loading->refresh(colors.secondaryText, accentColor);
    m_copy->setAccent(accentColor);
    m_retry->setAccent(accentColor);
}

QSize FloatingResultView::idealSize() const
{
    layout()->activate();
    const int width = maximumWidth();
    return {width,
            layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : layout()->totalSizeHint().height()};
}

void FloatingResultView::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    if (m_corners == Corners::blended) {
        outline.addRoundedRect(QRectF(rect()), Style::panelRadius, Style::panelRadius);
    } else {
        outline.addRect(QRectF(rect()));
    }
    painter.fillPath(outline, colors.window);

    painter.save();
    painter.setClipRect(m_header->geometry());
    painter.fillPath(outline, Style::horizontalGradient(brandGradient(m_settings.theme()), width()));
    painter.restore();

    painter.setPen(QPen(colors.border, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Style::panelRadius, Style::panelRadius);
}

void FloatingResultView::setCorners(Corners corners)
{
    if (corners != m_corners) {
        m_corners = corners;
        update();
    }
}

void FloatingResultView::setMotion(Spinner::Motion motion)
{
    m_loading->setMotion(motion);
}

void FloatingResultView::changeEvent(QEvent *event)
{
    // Colour children only once they exist: Qt sends style and palette changes while the first ones are being made.
    if (event->type() == QEvent::ApplicationPaletteChange && m_retry != nullptr) {
        refreshColors();
    }
    QWidget::changeEvent(event);
}

} // namespace orvesa
