#include "UI/PanelAnnouncer.h"

#include "Core/Localization.h"
#include "Platform/PanelWindowPort.h"

namespace orvesa {

namespace {

/// Nobody listens to more at a stretch; all of it can be read in the panel.
constexpr qsizetype longestAnnouncement = 1000;

QString spoken(const FloatingResultViewModel::Phase &phase)
{
    if (const auto *success = std::get_if<FloatingResultViewModel::Success>(&phase)) {
        return success->text.left(longestAnnouncement);
    }
    if (const auto *failure = std::get_if<FloatingResultViewModel::Failure>(&phase)) {
        return failure->message.left(longestAnnouncement);
    }
    return Localization::string(L10nKey::panelThinking);
}

} // namespace

PanelAnnouncer::PanelAnnouncer(PanelWindowPort &port) : m_port(port) {}

void PanelAnnouncer::announce(const FloatingResultViewModel &model, QObject &window)
{
    if (model.phase() != m_phase) {
        m_phase = model.phase();
        m_port.announce(window, spoken(m_phase));
    }
    if (model.statusMessage() != m_statusMessage) {
        m_statusMessage = model.statusMessage();
        if (m_statusMessage) {
            m_port.announce(window, *m_statusMessage);
        }
    }
}

void PanelAnnouncer::forget()
{
    m_phase = FloatingResultViewModel::Loading{};
    m_statusMessage.reset();
}

} // namespace orvesa
