#pragma once

// The panel's header row: title, the picker that fits the task, close button. The panel is dragged by it. It is
// transparent: the panel paints the gradient below it, so that both share one rounded shape. Main thread.

#include "UI/FloatingResultViewModel.h"
#include "UI/WindowDragArea.h"

namespace orvesa {

class HeaderPicker;
class PanelTitle;
class SymbolButton;

class PanelHeader final : public WindowDragArea {
    Q_OBJECT

public:
    /// The model must outlive the header.
    explicit PanelHeader(FloatingResultViewModel &model, QWidget *parent = nullptr);

    /// Takes title, pickers and texts from the model and the interface language.
    void refresh();

private:
    void fillPickers();

    FloatingResultViewModel &m_model;
    PanelTitle *m_title;
    HeaderPicker *m_languagePicker;
    HeaderPicker *m_modePicker;
    SymbolButton *m_close;
};

} // namespace orvesa
