#include "Core/CaptureReport.h"

#include <QLoggingCategory>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(captureLog, "orvesa.capture", QtWarningMsg)

} // namespace

CaptureReport::CaptureReport(const ClockPort &clock) : m_clock(clock), m_begun(clock.now()), m_stepBegun(m_begun) {}

CaptureReport::~CaptureReport()
{
    qCDebug(captureLog, "%s after %lld ms: %s", m_hasText ? "text" : "no text",
            static_cast<long long>((m_clock.now() - m_begun).count()), qPrintable(m_steps.join(u", "_s)));
}

void CaptureReport::ended(const QString &step)
{
    const std::chrono::milliseconds now = m_clock.now();
    m_steps.append(u"%1 %2 ms"_s.arg(step).arg((now - m_stepBegun).count()));
    m_stepBegun = now;
}

void CaptureReport::succeeded()
{
    m_hasText = true;
}

} // namespace orvesa
