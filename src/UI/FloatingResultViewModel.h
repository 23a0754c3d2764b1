#pragma once

// What the result panel shows. The coordinator writes it, the view renders it and calls back through the actions.
//
// Every setter emits changed(), also for an equal value; several changes in a row are one change for observers that
// listen through a queued connection. Main thread only.

#include "Models/PolishMode.h"
#include "Models/TargetLanguage.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace orvesa {

class FloatingResultViewModel final : public QObject {
    Q_OBJECT

public:
    struct Success {
        QString text;
        bool operator==(const Success &) const = default;
    };
    struct Failure {
        QString message;
        bool operator==(const Failure &) const = default;
    };
    struct Loading {
        bool operator==(const Loading &) const = default;
    };
    using Phase = std::variant<Success, Failure, Loading>;

    using QObject::QObject;

    [[nodiscard]] const QString &taskTitle() const { return m_taskTitle; }
    [[nodiscard]] const QString &sourceText() const { return m_sourceText; }
    [[nodiscard]] const Phase &phase() const { return m_phase; }
    [[nodiscard]] const std::optional<QString> &statusMessage() const { return m_statusMessage; }
    [[nodiscard]] std::optional<TargetLanguage> translationLanguage() const { return m_translationLanguage; }
    [[nodiscard]] std::optional<PolishMode> polishMode() const { return m_polishMode; }

    void setTaskTitle(const QString &title);
    void setSourceText(const QString &text);
    void setPhase(Phase phase);
    void setStatusMessage(std::optional<QString> message);
    void setTranslationLanguage(std::optional<TargetLanguage> language);
    void setPolishMode(std::optional<PolishMode> mode);

    std::function<void()> onCopy;
    std::function<void()> onRetry;
    std::function<void()> onClose;
    std::function<void(TargetLanguage)> onLanguageChange;
    std::function<void(PolishMode)> onPolishModeChange;

Q_SIGNALS:
    void changed();

private:
    QString m_taskTitle;
    QString m_sourceText;
    Phase m_phase = Loading{};
    std::optional<QString> m_statusMessage;
    std::optional<TargetLanguage> m_translationLanguage;
    std::optional<PolishMode> m_polishMode;
};

} // namespace orvesa
