#include "Platform/linux/PointerQuestion.h"

#include <utility>

namespace orvesa {

PointerQuestion::PointerQuestion(std::chrono::milliseconds bound)
{
    m_bound.setSingleShot(true);
    m_bound.setInterval(bound);
    connect(&m_bound, &QTimer::timeout, this, [this] { answer(std::nullopt); });
}

PointerQuestion::~PointerQuestion() = default;

void PointerQuestion::ask()
{
    m_isAsked = true;
    m_bound.start();
}

void PointerQuestion::answer(std::optional<QPointF> place)
{
    if (std::exchange(m_isAsked, false)) {
        m_bound.stop();
        Q_EMIT answered(place);
    }
}

} // namespace orvesa
