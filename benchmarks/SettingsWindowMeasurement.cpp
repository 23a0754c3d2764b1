#include "SettingsWindowMeasurement.h"

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr double most = 1.5;

ReportRow row(const QString &title, const Samples &floor, const Samples &product)
{
    const bool met = product.median() <= most * floor.median();
    return {.title = title,
            .unit = u"ms"_s,
            .decimals = 1,
            .floor = floor,
            .product = product,
            .goal = u"<= %1 x floor"_s.arg(most),
            .met = met};
}

} // namespace

SettingsWindowMeasurement::SettingsWindowMeasurement(desktop::Desktop &desktop, const QString &programFolder)
    : m_desktop(desktop), m_program(programFolder + u"/orvesa-open-settings"_s)
{
}

SettingsWindowMeasurement::Opened SettingsWindowMeasurement::open(const QStringList &arguments)
{
    const desktop::ProcessResult result = m_desktop.runToEnd(m_program, arguments);
    const QList<QByteArray> words = result.standardOutput.simplified().split(' ');
    if (result.exitCode != 0 || words.size() != 3) {
        throw std::runtime_error("the settings window could not be opened: " + result.standardError.toStdString());
    }
    return {.first = words[0].toDouble(), .second = words[1].toDouble(), .widgets = words[2].toInt()};
}

void SettingsWindowMeasurement::measure(ReportTable &table, int rounds)
{
    Samples floorFirst, floorSecond, productFirst, productSecond;
    for (int round = 0; round < rounds; ++round) {
        const Opened product = open({u"settings"_s});
        const Opened floor = open({u"floor"_s, QString::number(product.widgets)});
        if (floor.widgets != product.widgets) {
            throw std::runtime_error("the floor has another number of widgets than the settings window");
        }
        productFirst.add(product.first);
        productSecond.add(product.second);
        floorFirst.add(floor.first);
        floorSecond.add(floor.second);
    }
    table.add(row(u"settings window opened first"_s, floorFirst, productFirst));
    table.add(row(u"settings window opened again"_s, floorSecond, productSecond));
}

} // namespace orvesa::benchmark
