#pragma once

// One stored prompt in the list: icon, name, shortcut, the template's beginning, and its two buttons. Main thread only.

#include "App/Settings/SettingsCard.h"
#include "Models/CustomPrompt.h"

#include <functional>

class QLabel;

namespace orvesa {

class ElidedLabel;
class TextButton;

class PromptRow final : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void(const QUuid &id)> edit;
        std::function<void(const QUuid &id)> remove;
    };

    explicit PromptRow(Actions actions, QWidget *parent = nullptr);

    /// Shows the prompt, with texts in the interface language.
    void setPrompt(const CustomPrompt &prompt);
    [[nodiscard]] const QUuid &promptID() const { return m_id; }
    [[nodiscard]] TextButton &editButton() const { return *m_edit; }
    [[nodiscard]] TextButton &deleteButton() const { return *m_delete; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QUuid m_id;
    ElidedLabel *m_name;
    QLabel *m_shortcut;
    ElidedLabel *m_preview;
    TextButton *m_edit;
    TextButton *m_delete;
};

} // namespace orvesa
