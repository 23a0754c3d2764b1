#pragma once

// The rows of the stored prompts, in their order.
//
// The rows of the first screen are there at once; many more follow while the event loop is idle, so that a long list
// opens as quickly as a short one. All rows are as high as the highest, since those in other scripts differ, and are
// placed by counting: a layout would measure every row for every new one. Main thread only.

#include "App/Settings/PromptRow.h"

#include <QBasicTimer>
#include <QWidget>

#include <vector>

namespace orvesa {

class PromptsSettingsViewModel;

class PromptListView final : public QWidget {
    Q_OBJECT

public:
    PromptListView(PromptsSettingsViewModel &model, QWidget *parent = nullptr);

    /// Shows the model's prompts of this moment, with texts in the interface language.
    void refresh();
    [[nodiscard]] const std::vector<PromptRow *> &rows() const { return m_rows; }
    /// Whether every prompt has its row.
    [[nodiscard]] bool isComplete() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void makeRows(std::size_t wanted);
    void place(std::size_t index);
    void placeRows();
    void remove(const QUuid &id);

    PromptsSettingsViewModel &m_model;
    std::vector<PromptRow *> m_rows;
    int m_rowHeight = 0; ///< of the highest row so far
    QBasicTimer m_fillTimer;
};

} // namespace orvesa
