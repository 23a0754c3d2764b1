#include "PanelMeasurement.h"

#include "ProcessFigures.h"

#include "service/ServiceAnswers.h"

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint besideTheText{300, 300};
constexpr QPoint emptyCorner{1'260, 880};
constexpr std::chrono::milliseconds calm{120};
constexpr double nanosecondsPerMillisecond = 1e6;
/// What the allocator keeps back or gives away from one moment to another.
constexpr double allocatorNoiseMegabytes = 0.5;

} // namespace

PanelMeasurement::PanelMeasurement(BenchStage &stage, const desktop::Process &product)
    : m_stage(stage), m_product(product), m_probe(stage.desktop().display())
{
}

void PanelMeasurement::answerAtOnce(const QString &text)
{
    m_stage.service().setResponder(
        [text](const service::ServiceRequest &request) { return service::protocolResponse(request, text); });
}

void PanelMeasurement::answerLater()
{
    m_stage.service().setResponder(
        service::Responder([this](const service::ServiceRequest &request, service::Answer answer) {
            const std::scoped_lock lock(m_mutex);
            m_waiting.emplace(request, std::move(answer));
        }));
}

xcb_window_t PanelMeasurement::open()
{
    const std::size_t before = m_stage.service().requests().size();
    m_stage.desktop().pointer().moveTo(besideTheText);
    m_probe.clear();
    m_stage.desktop().keyboard().press(u"Alt+d"_s);
    if (!m_stage.service().waitForRequests(before + 1)) {
        throw std::runtime_error("the shortcut led to no request");
    }
    return m_probe.awaitPaintedWindow(m_stage.desktop().windows(), m_product.pid());
}

double PanelMeasurement::answer(xcb_window_t panel, const QString &text)
{
    desktop::processEventsFor(calm);
    std::optional<std::pair<service::ServiceRequest, service::Answer>> waiting;
    {
        const std::scoped_lock lock(m_mutex);
        waiting.swap(m_waiting);
    }
    if (!waiting) {
        throw std::runtime_error("no request waits for its answer");
    }
    const service::ServiceResponse response = service::protocolResponse(waiting->first, text);
    m_probe.awaitPaintingAnew(panel);
    const qint64 handedOver = service::monotonicNanoseconds();
    waiting->second(response);
    // Nothing here asks the X server for anything meanwhile.
    const auto painted = m_probe.awaitPainted(panel, desktop::usualDeadline);
    if (!painted) {
        throw std::runtime_error("the answer was not painted");
    }
    return static_cast<double>(*painted - handedOver) / nanosecondsPerMillisecond;
}

void PanelMeasurement::close()
{
    m_stage.desktop().pointer().clickAt(emptyCorner);
    m_stage.desktop().windows().awaitNoWindow({.pid = m_product.pid()});
    m_stage.focusEditor(); // the click on the desktop took the keyboard from it
}

void PanelMeasurement::measureAnswer(ReportTable &table, const QString &size, qsizetype bytes, double most, int rounds)
{
    const QString text =
        u"The weather is fine today, and the train was on time. "_s.repeated(bytes / 54 + 1).left(bytes);
    Samples samples;
    answerLater();
    for (int round = 0; round < rounds; ++round) {
        const xcb_window_t panel = open();
        samples.add(answer(panel, text));
        BenchStage::awaitRest(m_product, calm);
        close();
    }
    ReportRow row{.title = u"answer of %1 to painted text"_s.arg(size),
                  .unit = u"ms"_s,
                  .decimals = 1,
                  .floor = {},
                  .product = samples,
                  .goal = u"<= %1"_s.arg(most),
                  .met = samples.median() <= most};
    table.add(std::move(row));
}

void PanelMeasurement::measureMemory(ReportTable &table, int openings)
{
    answerAtOnce(u"The weather is fine today."_s);
    const auto openOften = [this](int times) {
        for (int time = 0; time < times; ++time) {
            static_cast<void>(open());
            close();
        }
        BenchStage::awaitRest(m_product);
        return memoryOf(m_product.pid()).anonymousMegabytes;
    };
    constexpr int untilSettled = 20;
    const double before = openOften(untilSettled);
    Samples growth;
    growth.add(openOften(openings) - before);
    table.add({.title = u"memory after %1 openings"_s.arg(openings),
               .unit = u"MB"_s,
               .decimals = 2,
               .floor = {},
               .product = growth,
               .goal = u"<= +%1"_s.arg(allocatorNoiseMegabytes),
               .met = growth.median() <= allocatorNoiseMegabytes});
}

} // namespace orvesa::benchmark
