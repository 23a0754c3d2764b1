#pragma once

// Everything that the running utility consists of, built over a desktop's ports in the order in which it is needed.
//
// Main thread, inside a QApplication. The ports must outlive it. At its end, what is under way ends first, while
// everything that this touches is still there.

#include "App/AppDelegate.h"
#include "App/Services.h"
#include "App/TranslationCoordinator.h"
#include "App/WarmUp.h"
#include "Core/ClipboardService.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/OCRService.h"
#include "Core/TextSelectionService.h"
#include "UI/FloatingResultPanelController.h"

#include <deque>

namespace orvesa {

class Utility final {
public:
    struct Ports {
        UserDefaultsPort &userDefaults;
        const PreferredLanguagesPort &preferredLanguages;
        KeyStorePort &keyStore;
        ClockPort &clock;
        HotKeyPort &hotKeys;
        KeyMonitorPort &keyMonitor;
        TrayPort &tray;
        WorkspacePort &workspace;
        AccessibilityElementsPort &accessibilityElements;
        AccessibilityTrustPort &accessibilityTrust;
        KeyboardEventPort &keyboardEvents;
        PasteboardPort &pasteboard;
        MouseMonitorPort &mouseMonitor;
        PanelWindowPort &panelWindow;
        ScreenCapturePort &screenCapture;
        TextRecognitionPort &textRecognition;
    };

    explicit Utility(const Ports &ports);
    ~Utility();
    Q_DISABLE_COPY_MOVE(Utility)

    [[nodiscard]] AppDelegate &delegate() { return m_delegate; }
    /// What the first shortcut would otherwise have to wait for. For idle moments after the start.
    [[nodiscard]] std::deque<WarmUp::Piece> warmUpPieces();

private:
    KeyStorePort &m_keyStore;
    Services m_services;
    ClipboardService m_clipboard;
    TextSelectionService m_selection;
    OCRService m_ocr;
    FloatingResultPanelController m_panel;
    TranslationCoordinator m_coordinator;
    HotKeyRecordingState m_recording;
    AppDelegate m_delegate;
};

} // namespace orvesa
