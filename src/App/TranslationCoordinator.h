#pragma once

// Turns a request into the sequence permission check, text capture, prompt, service call, result panel.
//
// It remembers the last source text and task, so that the panel can run them again, and holds no settings of its own:
// every run reads them when it needs them. Main thread only; all collaborators must outlive it. Jobs hold it weakly.

#include "AI/AIProviderType.h"
#include "App/Job.h"
#include "Models/AITask.h"
#include "Models/AppError.h"
#include "Models/TargetLanguage.h"
#include "UI/FloatingResultPanelController.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>

#include <chrono>
#include <optional>
#include <set>
#include <stop_token>

namespace orvesa {

class AccessibilityTrustPort;
class AIProviderSource;
class ClipboardService;
class ClockPort;
class OCRService;
class SettingsStore;
class TextSelectionService;

class TranslationCoordinator final : public QObject {
    Q_OBJECT

public:
    struct Collaborators {
        AccessibilityTrustPort &trust;
        TextSelectionService &textSelectionService;
        ClipboardService &clipboardService; ///< only copies results
        OCRService &ocrService;
        const SettingsStore &settings;
        const AIProviderSource &providers;
        FloatingResultPanelController &panelController;
        ClockPort &clock;
    };

    /// Lets the menu close and the application in front get the keyboard back before its selection is read.
    static constexpr std::chrono::milliseconds menuDelay{200};
    /// How long a status message stays.
    static constexpr std::chrono::milliseconds statusDuration{3000};

    explicit TranslationCoordinator(const Collaborators &collaborators);

    /// Captures the selection after the delay and runs the task on it.
    void run(AITask task, std::chrono::milliseconds delay);
    /// Lets the user drag a rectangle, reads the text in it and translates it.
    void ocrTranslate();

    /// The status item's menu opens and closes: the panel stays while it is used.
    void noteStatusMenu(FloatingResultPanelController::StatusMenu menu);

    /// Asks the current job to stop, before the program ends.
    void cancelCurrentTask();

    /// The tasks that the built-in actions run, from the settings of this moment.
    [[nodiscard]] AITask translateTask() const;
    [[nodiscard]] AITask polishTask() const;

private:
    using Weak = QPointer<TranslationCoordinator>;
    using Position = FloatingResultPanelController::Position;

    void wireActions();
    void startJob(Job::Body body);
    void startGenerating(AITask task);
    void retry();
    void changeTask(AITask task);
    void copyResult();
    void flashStatus(L10nKey message);
    void presentLoading(const QString &text, const AITask &task, Position position);
    void noteKey(AIProviderType provider, bool isThere);
    void presentError(const AppError &error, const AITask &task);

    static QCoro::Task<void> captureAndGenerate(Weak self, AITask task, std::stop_token stop);
    static QCoro::Task<void> recognizeAndGenerate(Weak self, std::stop_token stop);
    static QCoro::Task<void> generate(Weak self, QString text, AITask task, Position position, std::stop_token stop);

    Collaborators m_with;
    std::optional<Job> m_currentTask;
    QString m_lastSourceText;
    std::optional<AITask> m_lastAITask;
    std::set<AIProviderType> m_keyedProviders; ///< those whose last request found a key
};

} // namespace orvesa
