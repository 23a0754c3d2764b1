#pragma once

// Reads the text that is selected in the application in front.
//
// It asks for the text first, which has no side effects, and only where that gives nothing has the application copy its
// selection: the pasteboard's contents are put aside, the copied text is read, and the contents are put back. Stateless
// between captures. Main thread; the ports must outlive the service and its jobs.

#include "Core/CaptureTurn.h"
#include "Core/ClipboardService.h"
#include "Platform/AccessibilityElementsPort.h"
#include "Platform/AccessibilityTrustPort.h"
#include "Platform/ClockPort.h"
#include "Platform/KeyboardEventPort.h"
#include "Platform/WorkspacePort.h"

#include <QCoroTask>

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvesa {

class TextSelectionService final {
public:
    struct Ports {
        AccessibilityElementsPort &elements;
        const AccessibilityTrustPort &trust;
        const WorkspacePort &workspace;
        KeyboardEventPort &keyboard;
        PasteboardPort &pasteboard;
        ClockPort &clock;
    };

    /// How long the shortcut's own keys may stay down before the copy keystroke is sent all the same.
    static constexpr std::chrono::milliseconds releaseBound{1000};
    static constexpr std::chrono::milliseconds releaseRound{20};
    /// How often, and how many times, the pasteboard is looked at for the copied text.
    static constexpr std::chrono::milliseconds copyRound{50};
    static constexpr int copyRounds = 20;

    explicit TextSelectionService(const Ports &ports);
    /// Puts the pasteboard back at once where a capture has it. Captures under way find nothing.
    ~TextSelectionService();
    Q_DISABLE_COPY_MOVE(TextSelectionService)

    /// The selection exactly as it is, never blank. Throws AppError: accessibilityPermissionDenied or noSelectedText.
    /// Several at a time do not get into each other's way. Empty, which is no selection, when a stop was requested
    /// while the pasteboard was another capture's: whoever presses a shortcut again and again wants the last press.
    [[nodiscard]] QCoro::Task<QString> currentSelectedText(std::stop_token stop = {});

    /// The accessibility read alone: no side effects, may be empty or blank.
    [[nodiscard]] static std::optional<QString> selectedTextViaAccessibility(AccessibilityElementsPort &elements);

private:
    using Action = std::function<void()>;

    /// Contents that a capture has put aside, and the pasteboard's count of changes then.
    struct PutAside {
        ClipboardService::Snapshot contents;
        qint64 count = 0;
    };

    /// Held by every job as well: a capture may still wait when the service has gone.
    struct State {
        explicit State(const Ports &ports) : with(ports), clipboard(ports.pasteboard) {}

        Ports with;
        ClipboardService clipboard;
        CaptureTurn turn;
        std::optional<PutAside> putAside; ///< of the capture that has the turn
        bool isOver = false;              ///< the service has gone
    };
    using SharedState = std::shared_ptr<State>;

    [[nodiscard]] static QCoro::Task<QString> capture(SharedState state, std::stop_token stop);
    /// By the copy keystroke, once the shortcut's own keys are up.
    [[nodiscard]] static QCoro::Task<QString> selectedTextViaClipboard(SharedState state, std::stop_token stop);
    /// Runs the action and gives the text that it brings onto the pasteboard, whose contents are then put back.
    [[nodiscard]] static QCoro::Task<QString> readPasteboard(SharedState state, Action action, std::stop_token stop);
    /// Puts back what is put aside if the pasteboard has changed since, and whether it had.
    static bool putBackWhenChanged(State &state);

    SharedState m_state;
};

} // namespace orvesa
