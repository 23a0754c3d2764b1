#include "App/Settings/PromptListView.h"

#include "App/Settings/PromptsSettingsViewModel.h"
#include "UI/TextButton.h"

#include <QApplication>
#include <QLayout>
#include <QTimerEvent>

#include <algorithm>

namespace orvesa {

namespace {
constexpr std::size_t firstRows = 10;
constexpr std::size_t rowsPerStep = 12;
constexpr int rowSpacing = 10;
} // namespace

PromptListView::PromptListView(PromptsSettingsViewModel &model, QWidget *parent) : QWidget(parent), m_model(model)
{
    refresh();
}

bool PromptListView::isComplete() const
{
    return m_rows.size() == m_model.prompts().size();
}

void PromptListView::refresh()
{
    const std::vector<CustomPrompt> &prompts = m_model.prompts();
    while (m_rows.size() > prompts.size()) {
        PromptRow *row = m_rows.back();
        m_rows.pop_back();
        if (QWidget *focused = QApplication::focusWidget(); focused != nullptr && row->isAncestorOf(focused)) {
            focused->clearFocus(); // or it would go to whatever comes next
        }
        row->hide();
        // Its own button may be on the call stack.
        row->deleteLater();
    }
    m_rowHeight = 0;
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        m_rows[index]->setPrompt(prompts[index]);
        // The layouts in the row's own hear of its new texts no earlier.
        m_rows[index]->layout()->activate();
        m_rowHeight = std::max(m_rowHeight, m_rows[index]->sizeHint().height());
    }
    placeRows();
    makeRows(std::max(firstRows, m_rows.size()));
}

void PromptListView::makeRows(std::size_t wanted)
{
    const std::vector<CustomPrompt> &prompts = m_model.prompts();
    const int heightBefore = m_rowHeight;
    while (m_rows.size() < std::min(wanted, prompts.size())) {
        auto *row = new PromptRow(
            {.edit = [this](const QUuid &id) { m_model.edit(id); }, .remove = [this](const QUuid &id) { remove(id); }},
            this);
        row->setPrompt(prompts[m_rows.size()]);
        if (!m_rows.empty()) {
            setTabOrder(&m_rows.back()->deleteButton(), &row->editButton());
            setTabOrder(&row->editButton(), &row->deleteButton());
        }
        // Rows differ in height by the scripts in them.
        m_rowHeight = std::max(m_rowHeight, row->sizeHint().height());
        m_rows.push_back(row);
        place(m_rows.size() - 1);
        row->show();
    }
    if (m_rowHeight != heightBefore) {
        placeRows();
    }
    const int count = static_cast<int>(prompts.size());
    setFixedHeight(count == 0 ? 0 : count * (m_rowHeight + rowSpacing) - rowSpacing);
    if (isComplete()) {
        m_fillTimer.stop();
    } else if (!m_fillTimer.isActive()) {
        m_fillTimer.start(0, this);
    }
}

void PromptListView::remove(const QUuid &id)
{
    // The keyboard stays at the place in the list: with the next prompt, else with the one before.
    const auto focused =
        std::ranges::find_if(m_rows, [](const PromptRow *row) { return row->deleteButton().hasFocus(); });
    const auto place = static_cast<std::size_t>(focused - m_rows.begin());
    const bool hadFocus = focused != m_rows.end();
    m_model.remove(id);
    if (hadFocus && !m_rows.empty()) {
        m_rows[std::min(place, m_rows.size() - 1)]->deleteButton().setFocus(Qt::OtherFocusReason);
    }
}

void PromptListView::place(std::size_t index)
{
    m_rows[index]->setGeometry(0, static_cast<int>(index) * (m_rowHeight + rowSpacing), width(), m_rowHeight);
}

void PromptListView::placeRows()
{
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        place(index);
    }
}

void PromptListView::resizeEvent(QResizeEvent *event)
{
    placeRows();
    QWidget::resizeEvent(event);
}

void PromptListView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_fillTimer.timerId()) {
        makeRows(m_rows.size() + rowsPerStep);
    } else {
        QWidget::timerEvent(event);
    }
}

} // namespace orvesa
