// Measures the product against the floor program, in turns, on a private desktop, and prints a table.

#include "Benchmark.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;
using namespace orvesa::benchmark;

namespace {

QCommandLineOption countOption(const QString &name, const QString &description, int usual)
{
    return {name, description, u"COUNT"_s, QString::number(usual)};
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const BenchOptions usual;
    const auto rounds = countOption(u"rounds"_s, u"Starts of each program."_s, usual.rounds);
    const auto presses = countOption(u"presses"_s, u"Later presses of the shortcut, over all rounds."_s, usual.presses);
    const auto idle =
        countOption(u"idle"_s, u"Seconds in which wake-ups are counted."_s, static_cast<int>(usual.idle.count()));
    const auto instructions =
        countOption(u"instruction-rounds"_s, u"Starts of each program under callgrind."_s, usual.instructionRounds);
    const auto requests = countOption(u"requests"_s, u"Requests of each size and program."_s, usual.requests);
    const auto changes = countOption(u"changes"_s, u"Changes and readings of the preferences."_s, usual.changes);
    const QCommandLineOption settingsOnly(u"settings-only"_s, u"Measures preferences alone, likewise."_s);
    const QCommandLineOption startOnly(u"start-only"_s, u"Measures starts alone."_s);
    const QCommandLineOption shortcutsOnly(u"shortcuts-only"_s,
                                           u"Measures shortcuts and what they bring about alone."_s);
    const auto openings =
        countOption(u"openings"_s, u"Openings of the panel between two looks at memory."_s, usual.openings);
    const auto answers = countOption(u"answers"_s, u"Answers of each size."_s, usual.answers);
    const QCommandLineOption captureOnly(u"capture-only"_s, u"Measures the capture of selections alone."_s);
    const QCommandLineOption captureApps(
        u"capture-apps"_s, u"The same for large applications, which ./test --apps installs, and nothing else."_s);
    const QCommandLineOption windowOnly(u"settings-window-only"_s,
                                        u"Measures the opening of the settings window alone."_s);
    const QCommandLineOption only(u"requests-only"_s, u"Measures requests alone, which needs no desktop."_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Orvesa Translate against a floor program on a private desktop."_s);
    parser.addHelpOption();
    parser.addOptions({rounds, presses, idle, instructions, requests, changes, openings, answers, only, settingsOnly,
                       windowOnly, captureOnly, captureApps, shortcutsOnly, startOnly});
    parser.process(application);

    QTextStream output(stdout);
    try {
        QElapsedTimer timer;
        timer.start();
        const int requestCount = std::max(1, parser.value(requests).toInt());
        if (parser.isSet(windowOnly)) {
            ReportTable table;
            Benchmark::measureSettingsWindow(table, QCoreApplication::applicationDirPath(),
                                             std::max(1, parser.value(presses).toInt()));
            output << table.text();
            return 0;
        }
        if (parser.isSet(only)) {
            ReportTable table;
            Benchmark::measureRequests(table, requestCount);
            output << table.text();
            return 0;
        }
        if (parser.isSet(captureApps)) {
            ReportTable table;
            Benchmark::measureHeavyCapture(table, std::max(1, parser.value(presses).toInt()));
            output << table.text();
            return 0;
        }
        if (parser.isSet(captureOnly)) {
            ReportTable table;
            Benchmark::measureCapture(table, std::max(1, parser.value(presses).toInt()));
            output << table.text();
            return 0;
        }
        const int changeCount = std::max(1, parser.value(changes).toInt());
        if (parser.isSet(settingsOnly)) {
            ReportTable table;
            Benchmark::measureSettings(table, changeCount);
            output << table.text();
            return 0;
        }
        const BenchOptions options{.rounds = std::max(1, parser.value(rounds).toInt()),
                                   .presses = std::max(1, parser.value(presses).toInt()),
                                   .idle = std::chrono::seconds(std::max(1, parser.value(idle).toInt())),
                                   .answers = std::max(1, parser.value(answers).toInt()),
                                   .openings = std::max(1, parser.value(openings).toInt()),
                                   .requests = requestCount,
                                   .changes = changeCount,
                                   .instructionRounds = std::max(0, parser.value(instructions).toInt())};
        if (parser.isSet(startOnly)) {
            output << Benchmark(QCoreApplication::applicationDirPath(), options).runStart().text();
            return 0;
        }
        if (parser.isSet(shortcutsOnly)) {
            output << Benchmark(QCoreApplication::applicationDirPath(), options).runShortcuts().text();
            return 0;
        }
        output << "Floor: application, tray icon, menu. Both start in turns, " << options.rounds
               << " times each. Median (range).\n"
               << "Start: until the event loop answers the tray; then the product holds its shortcuts. Request bytes: "
                  "at a TLS service on this machine.\n\n"
               << Qt::flush;
        const ReportTable table = Benchmark(QCoreApplication::applicationDirPath(), options).run();
        output << table.text() << '\n'
               << (table.missedGoals() == 0 ? u"All goals met"_s : u"%1 goals missed"_s.arg(table.missedGoals()))
               << ", " << timer.elapsed() / 1000 << " s\n";
    } catch (const std::exception &error) {
        QTextStream(stderr) << "orvesa-bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
