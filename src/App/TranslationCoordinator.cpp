#include "App/TranslationCoordinator.h"

#include "AI/AIProviderSource.h"
#include "Core/ClipboardService.h"
#include "Core/Localization.h"
#include "Core/OCRService.h"
#include "Core/SettingsStore.h"
#include "Core/TextSelectionService.h"
#include "Platform/AccessibilityTrustPort.h"
#include "Platform/ClockPort.h"

namespace orvesa {

TranslationCoordinator::TranslationCoordinator(const Collaborators &collaborators) : m_with(collaborators)
{
    wireActions();
}

void TranslationCoordinator::cancelCurrentTask()
{
    if (m_currentTask) {
        m_currentTask->requestStop();
    }
}

void TranslationCoordinator::noteStatusMenu(FloatingResultPanelController::StatusMenu menu)
{
    m_with.panelController.setStatusMenu(menu);
}

void TranslationCoordinator::wireActions()
{
    FloatingResultViewModel &model = m_with.panelController.viewModel();
    const Weak self(this);
    model.onCopy = [self] {
        if (self) {
            self->copyResult();
        }
    };
    model.onRetry = [self] {
        if (self) {
            self->retry();
        }
    };
    model.onLanguageChange = [self](TargetLanguage language) {
        if (self) {
            self->changeTask(TranslateTask{rawValue(language)});
        }
    };
    model.onPolishModeChange = [self](PolishMode mode) {
        if (self) {
            self->changeTask(PolishTask{mode});
        }
    };
}

AITask TranslationCoordinator::translateTask() const
{
    return TranslateTask{rawValue(m_with.settings.targetLanguage())};
}

AITask TranslationCoordinator::polishTask() const
{
    return PolishTask{m_with.settings.polishMode()};
}

void TranslationCoordinator::startJob(Job::Body body)
{
    cancelCurrentTask();
    m_currentTask = Job::start(std::move(body));
}

void TranslationCoordinator::run(AITask task, std::chrono::milliseconds delay)
{
    startJob([self = Weak(this), task = std::move(task), delay](std::stop_token stop) -> QCoro::Task<void> {
        if (delay > std::chrono::milliseconds::zero()) {
            // A cancelled wait only ends early: the job goes on.
            co_await self->m_with.clock.sleep(delay, stop);
        }
        co_await captureAndGenerate(self, task, stop);
    });
}

void TranslationCoordinator::ocrTranslate()
{
    startJob([self = Weak(this)](std::stop_token stop) { return recognizeAndGenerate(self, std::move(stop)); });
}

QCoro::Task<void> TranslationCoordinator::captureAndGenerate(Weak self, AITask task, std::stop_token stop)
{
    if (!self) {
        co_return;
    }
    co_await self->m_with.panelController.locatePointer();
    if (!self) {
        co_return;
    }
    if (!self->m_with.trust.isTrusted()) {
        self->m_with.trust.requestTrust();
        self->presentError(AppError(AppError::Kind::accessibilityPermissionDenied), task);
        co_return;
    }

    std::optional<AppError> failure;
    QString text;
    try {
        text = co_await self->m_with.textSelectionService.currentSelectedText(stop);
    } catch (const std::exception &error) {
        failure = mapToAppError(error);
    }
    if (!self) {
        co_return;
    }
    if (failure) {
        self->presentError(*failure, task);
        co_return;
    }
    if (text.isEmpty()) {
        co_return; // a later request took its place before it had begun
    }
    self->m_lastSourceText = text;
    self->m_lastAITask = task;
    co_await generate(self, text, task, Position::nearMouse, stop);
}

QCoro::Task<void> TranslationCoordinator::recognizeAndGenerate(Weak self, std::stop_token stop)
{
    const AITask task = self->translateTask();
    std::optional<AppError> failure;
    std::optional<QString> text;
    try {
        text = co_await self->m_with.ocrService.captureAndRecognizeText(stop);
    } catch (const std::exception &error) {
        failure = mapToAppError(error);
    }
    if (!self || (!failure && !text)) {
        co_return; // the user cancelled the capture
    }
    co_await self->m_with.panelController.locatePointer(); // which is where the user ended the area
    if (!self) {
        co_return;
    }
    if (failure) {
        self->presentError(*failure, task);
        co_return;
    }
    self->m_lastSourceText = *text;
    self->m_lastAITask = task;
    co_await generate(self, *text, task, Position::nearMouse, stop);
}

void TranslationCoordinator::presentLoading(const QString &text, const AITask &task, Position position)
{
    FloatingResultViewModel &model = m_with.panelController.viewModel();
    model.setTaskTitle(displayName(task));
    model.setSourceText(text);
    model.setPhase(FloatingResultViewModel::Loading{});
    model.setStatusMessage(std::nullopt);
    const auto *translate = std::get_if<TranslateTask>(&task);
    const auto *polish = std::get_if<PolishTask>(&task);
    model.setTranslationLanguage(translate != nullptr ? fromRawValue<TargetLanguage>(translate->targetLanguage)
                                                      : std::nullopt);
    model.setPolishMode(polish != nullptr ? std::optional(polish->mode) : std::nullopt);
    m_with.panelController.show(position);
}

QCoro::Task<void> TranslationCoordinator::generate(Weak self, QString text, AITask task, Position position,
                                                   std::stop_token stop)
{
    if (!self) {
        co_return;
    }
    const AIProviderConfig config = self->m_with.settings.activeConfig();
    // The handshake with the service runs while the panel is being shown; but not before a key was found.
    if (self->m_keyedProviders.contains(config.providerType)) {
        self->m_with.providers.preconnect(config.providerType);
    }
    self->presentLoading(text, task, position);

    FloatingResultViewModel::Phase phase;
    bool isKeyThere = true;
    try {
        const std::unique_ptr<AIProvider> provider = self->m_with.providers.provider(config.providerType);
        // Awaited by itself: GCC 12 destroys an aggregate made within a co_await expression twice.
        QString answer = co_await provider->generate(text, task, config, stop);
        phase = FloatingResultViewModel::Success{std::move(answer)};
    } catch (const std::exception &error) {
        phase = FloatingResultViewModel::Failure{localizedDescription(error)};
        isKeyThere = mapToAppError(error).kind() != AppError::Kind::missingAPIKey;
    }
    // A cancelled job's result is written like any other; the job that replaced it writes its own after it.
    if (self) {
        self->noteKey(config.providerType, isKeyThere);
        self->m_with.panelController.viewModel().setPhase(std::move(phase));
    }
}

void TranslationCoordinator::noteKey(AIProviderType provider, bool isThere)
{
    if (isThere) {
        m_keyedProviders.insert(provider);
    } else {
        m_keyedProviders.erase(provider);
    }
}

void TranslationCoordinator::presentError(const AppError &error, const AITask &task)
{
    FloatingResultViewModel &model = m_with.panelController.viewModel();
    model.setTaskTitle(displayName(task));
    model.setSourceText(QString());
    model.setPhase(FloatingResultViewModel::Failure{error.errorDescription()});
    model.setStatusMessage(std::nullopt);
    // The polish picker stays as an earlier run left it: it still offers a way on.
    model.setTranslationLanguage(std::nullopt);
    m_with.panelController.show(Position::nearMouse);
}

void TranslationCoordinator::startGenerating(AITask task)
{
    startJob([self = Weak(this), text = m_lastSourceText, task = std::move(task)](std::stop_token stop) {
        return generate(self, text, task, Position::keep, std::move(stop));
    });
}

void TranslationCoordinator::retry()
{
    if (m_lastAITask && !m_lastSourceText.isEmpty()) {
        startGenerating(*m_lastAITask);
    } else {
        flashStatus(L10nKey::statusNothingToRetry);
    }
}

void TranslationCoordinator::changeTask(AITask task)
{
    if (m_lastSourceText.isEmpty()) {
        return;
    }
    m_lastAITask = task;
    startGenerating(std::move(task));
}

void TranslationCoordinator::copyResult()
{
    const auto *success = std::get_if<FloatingResultViewModel::Success>(&m_with.panelController.viewModel().phase());
    if (success != nullptr) {
        m_with.clipboardService.copy(success->text);
        flashStatus(L10nKey::statusCopied);
    }
}

void TranslationCoordinator::flashStatus(L10nKey message)
{
    const QString text = Localization::string(message);
    QPointer<FloatingResultViewModel> model(&m_with.panelController.viewModel());
    model->setStatusMessage(text);
    // Not the current task: neither a new request nor a retry may leave the message standing.
    (void)Job::start([model, text, clock = &m_with.clock](std::stop_token) -> QCoro::Task<void> {
        co_await clock->sleep(statusDuration);
        if (model && model->statusMessage() == text) {
            model->setStatusMessage(std::nullopt);
        }
    });
}

} // namespace orvesa
