#include "UI/PanelHeader.h"

#include "Core/Localization.h"
#include "UI/HeaderPicker.h"
#include "UI/PanelTitle.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

template <typename Enumeration>
void fill(HeaderPicker &picker, const QString &name)
{
    const auto cases = allCases<Enumeration>();
    bool isChanged = false;
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const int row = static_cast<int>(index);
        const QString text = displayText(cases[index]);
        if (row >= picker.count()) {
            picker.addItem(text);
            isChanged = true;
        } else if (picker.itemText(row) != text) {
            picker.setItemText(row, text);
            isChanged = true;
        }
    }
    if (isChanged) {
        // The picker measures its texts itself: nothing else tells the row that it has become wider or narrower.
        picker.updateGeometry();
    }
    if (name != picker.accessibleName()) {
        picker.setAccessibleName(name);
        picker.setToolTip(name);
    }
}

template <typename Enumeration>
void select(HeaderPicker &picker, std::optional<Enumeration> value)
{
    picker.setVisible(value.has_value());
    if (value) {
        picker.setCurrentIndex(static_cast<int>(*value));
    }
}

} // namespace

PanelHeader::PanelHeader(FloatingResultViewModel &model, QWidget *parent)
    : WindowDragArea(parent), m_model(model), m_title(new PanelTitle(this)), m_languagePicker(new HeaderPicker(this)),
      m_modePicker(new HeaderPicker(this)),
      m_close(new SymbolButton(u"xmark.circle.fill"_s, SymbolButton::Look::plain, this))
{
    setFixedHeight(Style::headerHeight);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(Style::contentMargin, 0, Style::headerEndMargin - SymbolButton::outset(), 0);
    row->setSpacing(Style::spacing - SymbolButton::outset());
    row->addWidget(m_title, 1);
    row->addWidget(m_languagePicker);
    row->addWidget(m_modePicker);
    row->addWidget(m_close);

    // A picker also tells when what was chosen is chosen again: the answer to that is the one shown.
    connect(m_languagePicker, &QComboBox::activated, this, [this](int index) {
        const TargetLanguage language = allCases<TargetLanguage>().at(static_cast<std::size_t>(index));
        if (m_model.onLanguageChange && language != m_model.translationLanguage()) {
            m_model.onLanguageChange(language);
        }
    });
    connect(m_modePicker, &QComboBox::activated, this, [this](int index) {
        const PolishMode mode = allCases<PolishMode>().at(static_cast<std::size_t>(index));
        if (m_model.onPolishModeChange && mode != m_model.polishMode()) {
            m_model.onPolishModeChange(mode);
        }
    });
    connect(m_close, &QAbstractButton::clicked, this, [this] {
        if (m_model.onClose) {
            m_model.onClose();
        }
    });
    refresh();
}

void PanelHeader::refresh()
{
    m_title->setText(m_model.taskTitle());
    fillPickers();
    select(*m_languagePicker, m_model.translationLanguage());
    select(*m_modePicker, m_model.polishMode());
    m_close->setDescription(Localization::string(L10nKey::panelClose));
}

void PanelHeader::fillPickers()
{
    fill<TargetLanguage>(*m_languagePicker, Localization::string(L10nKey::labelTargetLanguage));
    fill<PolishMode>(*m_modePicker, Localization::string(L10nKey::labelPolishMode));
}

} // namespace orvesa
