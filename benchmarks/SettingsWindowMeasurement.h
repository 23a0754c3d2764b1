#pragma once

// What opening the settings window costs, the first time and the second, against a window of as many plain widgets.
//
// Both are opened by a program of their own, in turns, on the private desktop; each program opens its window twice.
// Main thread; the desktop must outlive the measurement.

#include "ReportTable.h"
#include "Samples.h"

#include "desktop/Desktop.h"

#include <QString>

namespace orvesa::benchmark {

class SettingsWindowMeasurement final {
public:
    /// `programFolder` holds the program that opens the windows.
    SettingsWindowMeasurement(desktop::Desktop &desktop, const QString &programFolder);

    /// Adds two rows.
    void measure(ReportTable &table, int rounds);

private:
    struct Opened {
        double first = 0; ///< milliseconds
        double second = 0;
        int widgets = 0;
    };

    [[nodiscard]] Opened open(const QStringList &arguments);

    desktop::Desktop &m_desktop;
    QString m_program;
};

} // namespace orvesa::benchmark
