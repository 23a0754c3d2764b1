#pragma once

// The panel's content: header, source text, result (or progress, or failure), status line, buttons. It renders the
// model and forwards the user's actions; it decides nothing.
//
// The owner calls refresh() after the model or the settings changed and then asks for idealSize(). Main thread only.

#include "Core/AppLanguage.h"
#include "UI/FloatingResultViewModel.h"
#include "UI/Spinner.h"

#include <QWidget>

#include <optional>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace orvesa {

class AdaptiveTextScrollView;
class LoadingView;
class PanelHeader;
class SettingsStore;
class SymbolButton;

class FloatingResultView final : public QWidget {
    Q_OBJECT

public:
    /// How the window's rounded corners come about.
    enum class Corners {
        blended, ///< painted: what lies below shines through beside them
        cut      ///< the window is cut to shape: everything inside is painted
    };

    /// Both must outlive the view.
    FloatingResultView(FloatingResultViewModel &model, const SettingsStore &settings, QWidget *parent = nullptr);

    /// Renders the model. `visibleScreenHeight` in device-independent pixels.
    void refresh(int visibleScreenHeight);

    void setCorners(Corners corners);
    void setMotion(Spinner::Motion motion);

    /// The size that fits the content rendered last.
    [[nodiscard]] QSize idealSize() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildSourceSection(QVBoxLayout &body);
    void buildResultSection(QVBoxLayout &body);
    void buildButtons(QHBoxLayout &row);
    void refreshTexts();
    void refreshColors();
    void refreshResult(int textWidth, int maximumHeight);

    FloatingResultViewModel &m_model;
    const SettingsStore &m_settings;
    PanelHeader *m_header;
    QWidget *m_sourceSection = nullptr;
    QLabel *m_sourceCaption = nullptr;
    AdaptiveTextScrollView *m_source = nullptr;
    QLabel *m_resultCaption = nullptr;
    LoadingView *m_loading = nullptr;
    AdaptiveTextScrollView *m_result = nullptr;
    QWidget *m_failure = nullptr;
    QLabel *m_failureSymbol = nullptr;
    AdaptiveTextScrollView *m_failureText = nullptr;
    QLabel *m_status = nullptr;
    SymbolButton *m_copy = nullptr;
    SymbolButton *m_retry = nullptr;
    std::optional<AppLanguage> m_textsLanguage;
    Corners m_corners = Corners::blended;
};

} // namespace orvesa
