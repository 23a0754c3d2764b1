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

namespace orvesa {
class TextSelectionService;
}

namespace orvesa::benchmark {

class CaptureMeasurement final {
public:
    CaptureMeasurement();

    /// Adds the rows of every small application, each measured so many times.
    void measure(ReportTable &table, int rounds);
    /// The same for the large ones, which must be installed.
    void measureHeavy(ReportTable &table, int rounds);

private:
    /// How it copies when it does not tell its selection.
    enum class Copies { byMenuItem, byKeystroke };

    struct Application {
        QString name;
        QStringList arguments;
        QString windowClass;
        desktop::EnvironmentChanges changes;
        Copies copies = Copies::byKeystroke;
    };

    void measure(ReportTable &table, const Application &application, int rounds);
    void measureHeavy(ReportTable &table, const Application &application, int rounds);
    void measureKeystroke(ReportTable &table, int rounds);
    /// Whole captures of the document's text.
    static void measureWhole(ReportTable &table, const QString &title, TextSelectionService &service, int rounds);
    /// The application with a selected document.
    desktop::Process &open(const Application &application);

    desktop::Desktop m_desktop;
};

} // namespace orvesa::benchmark
