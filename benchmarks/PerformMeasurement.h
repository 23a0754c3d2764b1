#pragma once

// How long it takes to ask the running product for an action: by `--perform`, as a key bound in a window manager does
// it, and by a bare call over a connection to the bus that is there already.
//
// Main thread. The stage and the running product must outlive it.

#include "BenchStage.h"
#include "ReportTable.h"

namespace orvesa::benchmark {

class PerformMeasurement final {
public:
    explicit PerformMeasurement(BenchStage &stage);

    /// Asks so many times each way, in turns, until the product has answered, and adds the row.
    void measure(ReportTable &table, int rounds);

private:
    [[nodiscard]] double askByCommand();
    [[nodiscard]] double askByCall();

    BenchStage &m_stage;
};

} // namespace orvesa::benchmark
