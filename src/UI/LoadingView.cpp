#include "UI/LoadingView.h"

#include "Core/Localization.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"

#include <QHBoxLayout>

namespace orvesa {

LoadingView::LoadingView(QWidget *parent)
    : QWidget(parent), m_spinner(new Spinner(this)), m_label(makePlainLabel(Style::controlFont(), this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(Style::spacing, Style::spacing, Style::spacing, Style::spacing);
    row->setSpacing(Style::spacing);
    row->addWidget(m_spinner);
    row->addWidget(m_label, 1);
}

void LoadingView::refresh(const QColor &textColor, const QColor &accent)
{
    m_label->setText(Localization::string(L10nKey::panelThinking));
    setLabelColor(*m_label, textColor);
    m_spinner->setAccent(accent);
}

} // namespace orvesa
