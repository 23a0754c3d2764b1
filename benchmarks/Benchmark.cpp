#include "Benchmark.h"

#include "CaptureMeasurement.h"
#include "PanelMeasurement.h"
#include "PerformMeasurement.h"
#include "ProcessFigures.h"
#include "RequestMeasurement.h"
#include "SettingsMeasurement.h"
#include "SettingsWindowMeasurement.h"
#include "ShortcutMeasurement.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;
constexpr double instructionsPerMillion = 1e6;
/// Thread pools of the libraries let a thread go that had nothing to do for half a minute. That is the end of the
/// start, not idling.
constexpr std::chrono::seconds afterlifeOfThreads{32};

/// Goals are about the ratio to the floor, the distance from it, or the value itself.
ReportRow withGoal(ReportRow row, const QString &goal, bool met)
{
    row.goal = goal;
    row.met = met;
    return row;
}

ReportRow withMedianGoal(ReportRow row, double most)
{
    const bool met = row.product.median() <= most;
    return withGoal(std::move(row), u"<= %1"_s.arg(most), met);
}

int recognitionLibraries(const QStringList &libraries)
{
    return static_cast<int>(std::ranges::count_if(libraries, [](const QString &library) {
        return library.contains("tesseract"_L1) || library.contains("lept"_L1);
    }));
}

/// The number after "totals:" in what callgrind wrote.
double totalInstructions(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("callgrind left no result");
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("totals:")) {
            return line.sliced(static_cast<qsizetype>(qstrlen("totals:"))).trimmed().toDouble();
        }
    }
    throw std::runtime_error("callgrind's result has no total");
}

} // namespace

Benchmark::Benchmark(const QString &programFolder, BenchOptions options)
    : m_programFolder(programFolder), m_options(options), m_stage(programFolder)
{
}

ReportTable Benchmark::run()
{
    for (int round = 0; round < m_options.rounds; ++round) {
        measureStart(m_stage.floorProgram(), m_floor).terminate();
        desktop::Process &product = measureStart(m_stage.productProgram(), m_product);
        measureShortcut(product);
        product.terminate();
    }
    measureIdle();
    for (int round = 0; round < m_options.instructionRounds; ++round) {
        measureInstructions(m_stage.floorProgram(), m_floor);
        measureInstructions(m_stage.productProgram(), m_product);
    }
    ReportTable table;
    fillStartRows(table);
    fillShortcutRows(table);
    measurePanel(table);
    measureRequests(table, m_options.requests);
    measureCapture(table, m_options.presses);
    measureSettings(table, m_options.changes);
    measureSettingsWindow(table, m_programFolder, m_options.presses);
    return table;
}

ReportTable Benchmark::runStart()
{
    for (int round = 0; round < m_options.rounds; ++round) {
        measureStart(m_stage.floorProgram(), m_floor).terminate();
        measureStart(m_stage.productProgram(), m_product).terminate();
    }
    ReportTable table;
    table.add(startRow());
    return table;
}

ReportTable Benchmark::runShortcuts()
{
    for (int round = 0; round < m_options.rounds; ++round) {
        desktop::Process &product = measureStart(m_stage.productProgram(), m_product);
        measureShortcut(product);
        product.terminate();
    }
    ReportTable table;
    fillShortcutRows(table);
    measurePanel(table);
    return table;
}

void Benchmark::measureCapture(ReportTable &table, int rounds)
{
    CaptureMeasurement().measure(table, rounds);
}

void Benchmark::measureHeavyCapture(ReportTable &table, int rounds)
{
    CaptureMeasurement().measureHeavy(table, rounds);
}

void Benchmark::measureRequests(ReportTable &table, int rounds)
{
    RequestMeasurement requests;
    requests.measure(table, u"1 kB"_s, 1'000, rounds);
    requests.measure(table, u"1 MB"_s, 1'000'000, rounds);
}

void Benchmark::measureSettings(ReportTable &table, int rounds)
{
    SettingsMeasurement().measure(table, rounds);
}

void Benchmark::measureSettingsWindow(ReportTable &table, const QString &programFolder, int rounds)
{
    desktop::Desktop desktop;
    SettingsWindowMeasurement(desktop, programFolder).measure(table, rounds);
}

desktop::Process &Benchmark::measureStart(const QString &program, ProgramSamples &samples)
{
    const qint64 begun = service::monotonicNanoseconds();
    desktop::Process &process = m_stage.launch(program);
    samples.start.add(static_cast<double>(m_stage.awaitLoop(process) - begun) / nanosecondsPerMillisecond);
    if (program == m_stage.productProgram()) {
        m_stage.expectShortcutsHeld();
    }
    BenchStage::awaitRest(process);
    const MemoryFigures memory = memoryOf(process.pid());
    samples.proportional.add(memory.proportionalMegabytes);
    samples.anonymous.add(memory.anonymousMegabytes);
    return process;
}

void Benchmark::measureShortcut(const desktop::Process &product)
{
    ShortcutMeasurement shortcut(m_stage, product);
    const PressTimes first = shortcut.press();
    m_firstMapped.add(first.mapped);
    m_firstPainted.add(first.painted);
    m_firstRequest.add(first.request);
    const int presses = (m_options.presses + m_options.rounds - 1) / m_options.rounds;
    for (int press = 0; press < presses; ++press) {
        const PressTimes later = shortcut.press();
        m_laterMapped.add(later.mapped);
        m_laterPainted.add(later.painted);
        m_laterRequest.add(later.request);
    }
}

void Benchmark::measurePanel(ReportTable &table)
{
    desktop::Process &product = m_stage.launch(m_stage.productProgram());
    static_cast<void>(m_stage.awaitLoop(product));
    BenchStage::awaitRest(product);
    m_stage.focusEditor();
    {
        PanelMeasurement panel(m_stage, product);
        panel.measureMemory(table, m_options.openings);
        panel.measureAnswer(table, u"1 kB"_s, 1'000, 8, m_options.answers);
        panel.measureAnswer(table, u"100 kB"_s, 100'000, 60, m_options.answers);
        panel.measureAnswer(table, u"1 MB"_s, 1'000'000, 120, m_options.answers);
    }
    PerformMeasurement(m_stage).measure(table, m_options.presses);
    product.terminate();
}

void Benchmark::measureIdle()
{
    desktop::Process &floor = m_stage.launch(m_stage.floorProgram());
    desktop::Process &product = m_stage.launch(m_stage.productProgram());
    for (desktop::Process *process : {&floor, &product}) {
        static_cast<void>(m_stage.awaitLoop(*process));
        BenchStage::awaitRest(*process);
    }
    desktop::processEventsFor(afterlifeOfThreads);
    const ThreadSwitches floorBefore = contextSwitchesOf(floor.pid());
    const ThreadSwitches productBefore = contextSwitchesOf(product.pid());
    desktop::processEventsFor(m_options.idle);
    m_floor.wakeUps.add(static_cast<double>(wakeUpsBetween(floorBefore, contextSwitchesOf(floor.pid()))));
    m_product.wakeUps.add(static_cast<double>(wakeUpsBetween(productBefore, contextSwitchesOf(product.pid()))));

    const QStringList libraries = mappedLibrariesOf(product.pid());
    m_floor.libraries.add(static_cast<double>(mappedLibrariesOf(floor.pid()).size()));
    m_product.libraries.add(static_cast<double>(libraries.size()));
    m_recognitionLibraries = recognitionLibraries(libraries);
    product.terminate();
    floor.terminate();
}

void Benchmark::measureInstructions(const QString &program, ProgramSamples &samples)
{
    const QString result = m_stage.desktop().folders().temporary() + u"/callgrind.out"_s;
    desktop::Process &process = m_stage.launch(
        u"valgrind"_s, {u"--quiet"_s, u"--tool=callgrind"_s, u"--callgrind-out-file="_s + result, program});
    static_cast<void>(m_stage.awaitLoop(process, std::chrono::seconds(120)));
    process.terminate(std::chrono::seconds(30));
    samples.instructions.add(totalInstructions(result) / instructionsPerMillion);
    QFile::remove(result);
}

ReportRow Benchmark::startRow() const
{
    constexpr double most = 1.3;
    const ReportRow row{.title = u"start to ready (shortcuts held)"_s,
                        .unit = u"ms"_s,
                        .decimals = 1,
                        .floor = m_floor.start,
                        .product = m_product.start,
                        .goal = {},
                        .met = {}};
    return withGoal(row, u"<= %1 x floor"_s.arg(most), m_product.start.median() <= most * m_floor.start.median());
}

void Benchmark::fillStartRows(ReportTable &table) const
{
    const auto row = [this](const QString &title, const QString &unit, int decimals, Samples ProgramSamples::*samples) {
        return ReportRow{.title = title,
                         .unit = unit,
                         .decimals = decimals,
                         .floor = m_floor.*samples,
                         .product = m_product.*samples,
                         .goal = {},
                         .met = {}};
    };
    const double anonymous = m_product.anonymous.median() - m_floor.anonymous.median();
    table.add(startRow());
    if (m_options.instructionRounds > 0) {
        table.add(row(u"instructions to event loop"_s, u"million"_s, 1, &ProgramSamples::instructions));
    }
    table.add(row(u"idle memory, proportional"_s, u"MB"_s, 1, &ProgramSamples::proportional));
    table.add(withGoal(row(u"idle memory, anonymous"_s, u"MB"_s, 1, &ProgramSamples::anonymous), u"<= floor + 4 MB"_s,
                       anonymous <= 4));
    table.add(withGoal(row(u"idle wake-ups in %1 s"_s.arg(m_options.idle.count()), u""_s, 0, &ProgramSamples::wakeUps),
                       u"0"_s, m_product.wakeUps.greatest() == 0));
    table.add(row(u"mapped libraries"_s, u""_s, 0, &ProgramSamples::libraries));
    ReportRow recognition{.title = u"text recognition libraries mapped"_s,
                          .unit = {},
                          .decimals = 0,
                          .floor = {},
                          .product = {},
                          .goal = {},
                          .met = {}};
    recognition.product.add(m_recognitionLibraries);
    table.add(withGoal(recognition, u"0"_s, m_recognitionLibraries == 0));
}

void Benchmark::fillShortcutRows(ReportTable &table) const
{
    const auto row = [](const QString &title, const Samples &samples) {
        return ReportRow{
            .title = title, .unit = u"ms"_s, .decimals = 1, .floor = {}, .product = samples, .goal = {}, .met = {}};
    };
    table.add(withMedianGoal(row(u"first shortcut to panel mapped"_s, m_firstMapped), 8));
    table.add(row(u"first shortcut to panel painted"_s, m_firstPainted));
    table.add(withMedianGoal(row(u"first shortcut to request bytes"_s, m_firstRequest), 12));
    table.add(withMedianGoal(row(u"later shortcuts to panel mapped"_s, m_laterMapped), 5));
    table.add(row(u"later shortcuts to panel painted"_s, m_laterPainted));
    table.add(withMedianGoal(row(u"later shortcuts to request bytes"_s, m_laterRequest), 5));
}

} // namespace orvesa::benchmark
