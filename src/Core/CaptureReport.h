#pragma once

// What one capture did and how long each step took, written as one debug line when the capture ends
// (QT_LOGGING_RULES="orvesa.capture.debug=true"). Never the text.
//
// Main thread; the clock must outlive it.

#include "Platform/ClockPort.h"

#include <QString>
#include <QStringList>

#include <chrono>

namespace orvesa {

class CaptureReport final {
public:
    explicit CaptureReport(const ClockPort &clock);
    ~CaptureReport();
    Q_DISABLE_COPY_MOVE(CaptureReport)

    /// A step has ended; it began with the report or where the step before ended.
    void ended(const QString &step);
    /// The last step has given the text.
    void succeeded();

private:
    const ClockPort &m_clock;
    const std::chrono::milliseconds m_begun;
    std::chrono::milliseconds m_stepBegun;
    QStringList m_steps;
    bool m_hasText = false;
};

} // namespace orvesa
