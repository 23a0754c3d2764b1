#include "PerformMeasurement.h"

#include "desktop/BusClient.h"
#include "service/ServiceRequest.h"

#include <QVariantMap>

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

/// More than the bare call costs, for starting a process, linking it and connecting to the bus.
constexpr double mostMilliseconds = 15;
/// One that the product does not know: what an action costs is measured elsewhere.
const auto action = u"nothing"_s;

double millisecondsSince(qint64 start)
{
    constexpr double nanosecondsPerMillisecond = 1e6;
    return static_cast<double>(service::monotonicNanoseconds() - start) / nanosecondsPerMillisecond;
}

} // namespace

PerformMeasurement::PerformMeasurement(BenchStage &stage) : m_stage(stage) {}

double PerformMeasurement::askByCommand()
{
    const qint64 begun = service::monotonicNanoseconds();
    const desktop::ProcessResult result =
        m_stage.desktop().runToEnd(m_stage.productProgram(), {u"--perform"_s, action});
    const double taken = millisecondsSince(begun);
    if (result.exitCode != 0) {
        throw std::runtime_error("the running product was not reached: " + result.standardError.toStdString());
    }
    return taken;
}

double PerformMeasurement::askByCall()
{
    desktop::BusClient bus(m_stage.desktop().sessionBusAddress());
    const QString name = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
    const QString path = u'/' + QString(name).replace(u'.', u'/');
    const QVariantList arguments{action, QVariantList{}, QVariantMap{}};
    const qint64 begun = service::monotonicNanoseconds();
    bus.call(name, path, u"org.freedesktop.Application"_s, u"ActivateAction"_s, arguments);
    return millisecondsSince(begun);
}

void PerformMeasurement::measure(ReportTable &table, int rounds)
{
    ReportRow row{.title = u"--perform until it is answered"_s,
                  .unit = u"ms"_s,
                  .decimals = 1,
                  .floor = {},
                  .product = {},
                  .goal = u"<= bare call + %1 ms"_s.arg(mostMilliseconds),
                  .met = {}};
    for (int round = 0; round < rounds; ++round) {
        row.floor.add(askByCall());
        row.product.add(askByCommand());
    }
    row.met = row.product.median() <= row.floor.median() + mostMilliseconds;
    table.add(std::move(row));
}

} // namespace orvesa::benchmark
