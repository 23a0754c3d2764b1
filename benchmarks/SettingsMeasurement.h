#pragma once

// What preferences cost: reading all of them at the start, against reading their file; and one change, against writing
// the same bytes to a temporary file, to disk, and giving it the name.
//
// In turns with the floor, on the disk of the temporary folder. Main thread.

#include "ReportTable.h"
#include "Samples.h"

#include "fakes/FakePreferredLanguages.h"

#include <QTemporaryDir>

namespace orvesa::benchmark {

class SettingsMeasurement final {
public:
    /// Saves what a busy user has: every preference set, shortcuts changed, and prompts of some length.
    SettingsMeasurement();

    /// Adds two rows.
    void measure(ReportTable &table, int rounds);

private:
    [[nodiscard]] QString filePath() const;
    /// Waits until the disk has what earlier rounds wrote, so that no round pays for another.
    void settle() const;
    [[nodiscard]] double readFile() const; ///< microseconds, like the others
    [[nodiscard]] double readSettings();
    [[nodiscard]] double writeFile() const;
    [[nodiscard]] double changeSetting(int round);

    QTemporaryDir m_folder;
    FakePreferredLanguages m_languages;
};

} // namespace orvesa::benchmark
