#pragma once

// The table that a run ends with: each measurement of the floor and of the product, their ratio, the goal. Value type.

#include "Samples.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvesa::benchmark {

struct ReportRow {
    QString title;
    QString unit;
    int decimals = 1;
    Samples floor; ///< empty where the floor has no such thing
    Samples product;
    QString goal; ///< empty where there is none
    std::optional<bool> met;
};

class ReportTable final {
public:
    void add(ReportRow row);
    /// The rows, aligned, one a line, under a line of headings.
    [[nodiscard]] QString text() const;
    [[nodiscard]] int missedGoals() const;

private:
    std::vector<ReportRow> m_rows;
};

} // namespace orvesa::benchmark
