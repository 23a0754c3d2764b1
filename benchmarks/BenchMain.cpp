// Measures the product against the floor program, in turns, on a private desktop, and prints a table.

#include "Benchmark.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>

using namespace Qt::StringLiterals;
using namespace orvesa::benchmark;

namespace {

QCommandLineOption countOption(const QString &name, const QString &description, int usual)
{
    return {name, description, u"COUNT"_s, QString::number(usual)};
}

/// What the command line can say.
struct Arguments {
    BenchOptions usual;
    QCommandLineOption rounds = countOption(u"rounds"_s, u"Starts of each program."_s, usual.rounds);
    QCommandLineOption presses =
        countOption(u"presses"_s, u"Later presses of the shortcut, over all rounds."_s, usual.presses);
    QCommandLineOption idle =
        countOption(u"idle"_s, u"Seconds in which wake-ups are counted."_s, static_cast<int>(usual.idle.count()));
    QCommandLineOption instructions =
        countOption(u"instruction-rounds"_s, u"Starts of each program under callgrind."_s, usual.instructionRounds);
    QCommandLineOption requests = countOption(u"requests"_s, u"Requests of each size and program."_s, usual.requests);
    QCommandLineOption changes =
        countOption(u"changes"_s, u"Changes and readings of the preferences."_s, usual.changes);
    QCommandLineOption openings =
        countOption(u"openings"_s, u"Openings of the panel between two looks at memory."_s, usual.openings);
    QCommandLineOption answers = countOption(u"answers"_s, u"Answers of each size."_s, usual.answers);
    QCommandLineOption requestsOnly{u"requests-only"_s, u"Measures requests alone, which needs no desktop."_s};
    QCommandLineOption settingsOnly{u"settings-only"_s, u"Measures preferences alone, likewise."_s};
    QCommandLineOption windowOnly{u"settings-window-only"_s, u"Measures the opening of the settings window alone."_s};
    QCommandLineOption captureOnly{u"capture-only"_s, u"Measures the capture of selections alone."_s};
    QCommandLineOption captureApps{
        u"capture-apps"_s, u"The same for large applications, which ./test --apps installs, and nothing else."_s};
    QCommandLineOption shortcutsOnly{u"shortcuts-only"_s, u"Measures shortcuts and what they bring about alone."_s};
    QCommandLineOption startOnly{u"start-only"_s, u"Measures starts alone."_s};

    [[nodiscard]] QList<QCommandLineOption> all() const
    {
        return {rounds,       presses,      idle,       instructions, requests,    changes,       openings, answers,
                requestsOnly, settingsOnly, windowOnly, captureOnly,  captureApps, shortcutsOnly, startOnly};
    }
};

BenchOptions chosenOptions(const QCommandLineParser &parser, const Arguments &arguments)
{
    const auto count = [&](const QCommandLineOption &option, int least = 1) {
        return std::max(least, parser.value(option).toInt());
    };
    return {.rounds = count(arguments.rounds),
            .presses = count(arguments.presses),
            .idle = std::chrono::seconds(count(arguments.idle)),
            .answers = count(arguments.answers),
            .openings = count(arguments.openings),
            .requests = count(arguments.requests),
            .changes = count(arguments.changes),
            .instructionRounds = count(arguments.instructions, 0)};
}

/// The one measurement that was asked for; nothing when all are wanted.
std::optional<ReportTable> measureAlone(const QCommandLineParser &parser, const Arguments &arguments,
                                        const BenchOptions &options)
{
    const QString folder = QCoreApplication::applicationDirPath();
    if (parser.isSet(arguments.startOnly)) {
        return Benchmark(folder, options).runStart();
    }
    if (parser.isSet(arguments.shortcutsOnly)) {
        return Benchmark(folder, options).runShortcuts();
    }
    ReportTable table;
    if (parser.isSet(arguments.windowOnly)) {
        Benchmark::measureSettingsWindow(table, folder, options.presses);
    } else if (parser.isSet(arguments.requestsOnly)) {
        Benchmark::measureRequests(table, options.requests);
    } else if (parser.isSet(arguments.captureApps)) {
        Benchmark::measureHeavyCapture(table, options.presses);
    } else if (parser.isSet(arguments.captureOnly)) {
        Benchmark::measureCapture(table, options.presses);
    } else if (parser.isSet(arguments.settingsOnly)) {
        Benchmark::measureSettings(table, options.changes);
    } else {
        return std::nullopt;
    }
    return table;
}

void measureAll(QTextStream &output, const BenchOptions &options)
{
    QElapsedTimer timer;
    timer.start();
    output << "Floor: application, tray icon, menu. Both start in turns, " << options.rounds
           << " times each. Median (range).\n"
           << "Start: until the event loop answers the tray; then the product holds its shortcuts. Request bytes: "
              "at a TLS service on this machine.\n\n"
           << Qt::flush;
    const ReportTable table = Benchmark(QCoreApplication::applicationDirPath(), options).run();
    output << table.text() << '\n'
           << (table.missedGoals() == 0 ? u"All goals met"_s : u"%1 goals missed"_s.arg(table.missedGoals())) << ", "
           << timer.elapsed() / 1000 << " s\n";
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const Arguments arguments;
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Orvesa Translate against a floor program on a private desktop."_s);
    parser.addHelpOption();
    parser.addOptions(arguments.all());
    parser.process(application);
    const BenchOptions options = chosenOptions(parser, arguments);

    QTextStream output(stdout);
    try {
        if (const auto table = measureAlone(parser, arguments, options)) {
            output << table->text();
        } else {
            measureAll(output, options);
        }
    } catch (const std::exception &error) {
        QTextStream(stderr) << "orvesa-bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
