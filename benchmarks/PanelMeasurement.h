#pragma once

// What an answer costs once it is there: until the panel shows its text, and what many openings of the panel leave.
//
// Main thread. The stage and the product must outlive it; the service answers with what is measured meanwhile.

#include "BenchStage.h"
#include "ReportTable.h"
#include "Samples.h"
#include "WindowProbe.h"

#include "service/ServiceListener.h"

#include <mutex>
#include <optional>

namespace orvesa::benchmark {

class PanelMeasurement final {
public:
    PanelMeasurement(BenchStage &stage, const desktop::Process &product);

    /// Adds a row for an answer of that many bytes: from its hand-over to the service's socket until the panel has
    /// drawn it. `most` milliseconds are the goal.
    void measureAnswer(ReportTable &table, const QString &size, qsizetype bytes, double most, int rounds);
    /// Adds a row for what anonymous memory grows by over that many openings.
    void measureMemory(ReportTable &table, int openings);

private:
    /// Presses the shortcut, and returns with the panel that shows that it waits for the answer.
    xcb_window_t open();
    /// Hands the answer to the service, and returns milliseconds until it is painted.
    double answer(xcb_window_t panel, const QString &text);
    void close();
    void answerAtOnce(const QString &text);
    void answerLater();

    BenchStage &m_stage;
    const desktop::Process &m_product;
    WindowProbe m_probe;
    std::mutex m_mutex; ///< the service's thread brings what this one takes
    std::optional<std::pair<service::ServiceRequest, service::Answer>> m_waiting;
};

} // namespace orvesa::benchmark
