#pragma once

// One interleaved run: the floor and the product in turns, on one private desktop, until the table is full.
//
// Main thread. A measurement that cannot be made throws; nothing is left out in silence.

#include "BenchStage.h"
#include "ReportTable.h"

#include <chrono>

namespace orvesa::benchmark {

struct BenchOptions {
    int rounds = 5;                ///< starts of each program
    int presses = 20;              ///< of the shortcut after the first of each start, over all rounds
    std::chrono::seconds idle{20}; ///< how long wake-ups are counted
    int answers = 10;              ///< of each size, shown in the panel
    int openings = 100;            ///< of the panel, for what they leave in memory
    int requests = 200;            ///< of each size, from the floor and from the product's provider
    int changes = 100;             ///< of a preference, and as many readings of all
    int instructionRounds = 1;     ///< starts of each program under callgrind; 0 leaves instructions out
};

class Benchmark final {
public:
    Benchmark(const QString &programFolder, BenchOptions options);

    [[nodiscard]] ReportTable run();
    /// Only the starts.
    [[nodiscard]] ReportTable runStart();
    /// Only the part from a press of the shortcut to the answer in the panel.
    [[nodiscard]] ReportTable runShortcuts();
    /// Only the part about the capture of selections, on a desktop of its own.
    static void measureCapture(ReportTable &table, int rounds);
    /// The same for large applications, which must be installed.
    static void measureHeavyCapture(ReportTable &table, int rounds);
    /// Only the part that needs no desktop: what requests cost, as rows of the table.
    static void measureRequests(ReportTable &table, int rounds);
    /// The same for what preferences cost.
    static void measureSettings(ReportTable &table, int rounds);
    /// Only the opening of the settings window, by the programs in the folder, on a desktop of its own.
    static void measureSettingsWindow(ReportTable &table, const QString &programFolder, int rounds);

private:
    struct ProgramSamples {
        Samples start;
        Samples proportional;
        Samples anonymous;
        Samples wakeUps;
        Samples instructions;
        Samples libraries;
    };

    /// Starts the program and measures start and memory. It runs on.
    desktop::Process &measureStart(const QString &program, ProgramSamples &samples);
    void measureShortcut(const desktop::Process &product);
    void measurePanel(ReportTable &table);
    void measureIdle();
    void measureInstructions(const QString &program, ProgramSamples &samples);
    [[nodiscard]] ReportRow startRow() const;
    void fillStartRows(ReportTable &table) const;
    void fillShortcutRows(ReportTable &table) const;

    QString m_programFolder;
    BenchOptions m_options;
    BenchStage m_stage;
    ProgramSamples m_floor;
    ProgramSamples m_product;
    Samples m_firstMapped, m_firstPainted, m_firstRequest;
    Samples m_laterMapped, m_laterPainted, m_laterRequest;
    int m_recognitionLibraries = 0;
};

} // namespace orvesa::benchmark
