#pragma once

// What it costs to get at the selection of real applications, by each way, and how many questions the look into their
// menus takes.
//
// Runs the program's own adapters in this process, on a private desktop of its own, which becomes this process'
// desktop. Main thread.

#include "ReportTable.h"

#include "desktop/Desktop.h"

#include <QString>
#include <QStringList>

namespace orvesa::benchmark {

class CaptureMeasurement final {
public:
    CaptureMeasurement();

    /// Adds the rows of every application, each measured so many times.
    void measure(ReportTable &table, int rounds);

private:
    struct Application {
        QString name;
        QStringList arguments;
        QString windowClass;
        desktop::EnvironmentChanges changes;
    };

    void measure(ReportTable &table, const Application &application, int rounds);
    void measureKeystroke(ReportTable &table, int rounds);
    /// The application with a selected document.
    desktop::Process &open(const Application &application);

    desktop::Desktop m_desktop;
};

} // namespace orvesa::benchmark
