#pragma once

// One built-in action on the shortcuts page: icon, title, explanation, recorder and reset button. Main thread only.

#include "App/Settings/SettingsServices.h"
#include "Models/HotKeyAction.h"

#include <QWidget>

#include <functional>
#include <optional>

class QLabel;

namespace orvesa {

class HotKeyRecorderView;
class ShortcutsSettingsViewModel;
class SymbolButton;
class WrappingLabel;

class HotKeyRow final : public QWidget {
    Q_OBJECT

public:
    using Feedback = std::function<void(const std::optional<QString> &message)>;

    HotKeyRow(HotKeyAction action, const SettingsServices &services, ShortcutsSettingsViewModel &model,
              const Feedback &onFeedback, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void refresh();

    HotKeyAction m_action;
    ShortcutsSettingsViewModel &m_model;
    QLabel *m_title;
    WrappingLabel *m_subtitle;
    HotKeyRecorderView *m_recorder;
    SymbolButton *m_reset;
};

} // namespace orvesa
