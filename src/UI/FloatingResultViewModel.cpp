#include "UI/FloatingResultViewModel.h"

namespace orvesa {

void FloatingResultViewModel::setTaskTitle(const QString &title)
{
    m_taskTitle = title;
    Q_EMIT changed();
}

void FloatingResultViewModel::setSourceText(const QString &text)
{
    m_sourceText = text;
    Q_EMIT changed();
}

void FloatingResultViewModel::setPhase(Phase phase)
{
    m_phase = std::move(phase);
    Q_EMIT changed();
}

void FloatingResultViewModel::setStatusMessage(std::optional<QString> message)
{
    m_statusMessage = std::move(message);
    Q_EMIT changed();
}

void FloatingResultViewModel::setTranslationLanguage(std::optional<TargetLanguage> language)
{
    m_translationLanguage = language;
    Q_EMIT changed();
}

void FloatingResultViewModel::setPolishMode(std::optional<PolishMode> mode)
{
    m_polishMode = mode;
    Q_EMIT changed();
}

} // namespace orvesa
