#include "ocr/ScreenPath.h"

#include "ProcessFigures.h"
#include "Samples.h"
#include "WindowProbe.h"

#include "desktop/Desktop.h"
#include "desktop/TranslateProgram.h"
#include "service/LoopbackService.h"
#include "service/ServiceAnswers.h"
#include "service/ServiceRequest.h"

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 7;
constexpr QPoint place(300, 200);
constexpr QPoint emptyCorner(1200, 850);
/// How long somebody takes to drag at the least: the models are loaded by then.
constexpr std::chrono::milliseconds dragging{700};

double millisecondsBetween(qint64 start, qint64 end)
{
    return static_cast<double>(end - start) / 1e6;
}

QString row(const QString &title, const Samples &samples)
{
    return u"  %1 %2 ms (%3-%4)\n"_s.arg(title.leftJustified(46))
        .arg(samples.median(), 0, 'f', 1)
        .arg(samples.least(), 0, 'f', 1)
        .arg(samples.greatest(), 0, 'f', 1);
}

class Stage final {
public:
    Stage() : m_program(m_desktop, desktop::TranslateProgram::pathBeside())
    {
        m_service.setResponder([](const service::ServiceRequest &) {
            return service::ServiceResponse::json(service::chatCompletionAnswer(u"an answer"_s));
        });
        m_program.setService(m_service.address());
        m_program.storeKey("no-real-key");
        m_program.start();
        const desktop::Process &picture =
            m_desktop.launch(QCoreApplication::applicationDirPath() + u"/orvesa-PictureWindow"_s,
                             {QStringLiteral(ORVESA_OCR_FOLDER "/samples/en01.png"), QString::number(place.x()),
                              QString::number(place.y())});
        m_picture = m_desktop.windows().geometry(m_desktop.windows().awaitWindow({.pid = picture.pid()}));
    }

    void capture()
    {
        const std::size_t before = m_service.requests().size();
        const qint64 pressed = service::monotonicNanoseconds();
        m_desktop.keyboard().press(u"Alt+a"_s);
        m_desktop.windows().awaitWindow({.className = u"orvesa-screencapture"_s});
        overlay.add(millisecondsBetween(pressed, service::monotonicNanoseconds()));
        desktop::Pointer &pointer = m_desktop.pointer();
        pointer.moveTo(m_picture.topLeft());
        pointer.press(desktop::MouseButton::left);
        pointer.moveTo(m_picture.center());
        desktop::processEventsFor(dragging);
        pointer.moveTo(m_picture.bottomRight() + QPoint(1, 1));
        m_probe.clear();
        const qint64 released = service::monotonicNanoseconds();
        pointer.release(desktop::MouseButton::left);
        if (!m_service.waitForRequests(before + 1)) {
            throw std::runtime_error("the capture led to no request; the program said: " +
                                     m_program.process().standardError().right(2'000).toStdString());
        }
        request.add(millisecondsBetween(released, m_service.requests().at(before).firstByteNanoseconds));
        m_program.awaitResult([](const QString &text) { return text == u"an answer"_s; }, u"the answer"_s);
        const xcb_window_t panel = m_desktop.windows().awaitWindow({.pid = m_program.process().pid()});
        recognized.add(millisecondsBetween(released, m_probe.times(panel).mapped.value()));
        pointer.clickAt(emptyCorner);
        m_desktop.windows().awaitNoWindow({.pid = m_program.process().pid()});
    }

    [[nodiscard]] MemoryFigures memory() const { return memoryOf(m_program.process().pid()); }
    [[nodiscard]] QStringList libraries() const { return mappedLibrariesOf(m_program.process().pid()); }

    Samples overlay;
    Samples recognized; ///< until the panel is mapped, which holds the text by then
    Samples request;

private:
    service::LoopbackService m_service;
    desktop::Desktop m_desktop;
    WindowProbe m_probe{m_desktop.display()};
    desktop::TranslateProgram m_program;
    QRect m_picture;
};

} // namespace

QString screenPathReport()
{
    Stage stage;
    stage.capture(); // what every first panel costs is measured elsewhere
    const MemoryFigures before = stage.memory();
    stage.overlay = {};
    stage.recognized = {};
    stage.request = {};
    for (int round = 0; round < rounds; ++round) {
        stage.capture();
    }
    const MemoryFigures after = stage.memory();
    const QStringList libraries = stage.libraries();
    const auto recognition = std::ranges::count_if(libraries, [](const QString &library) {
        return library.contains("tesseract"_L1) || library.contains("lept"_L1);
    });
    QString report = u"screen path, %1 captures of three lines on a private desktop\n"_s.arg(rounds);
    report += row(u"shortcut to the dimmed screen"_s, stage.overlay);
    report += row(u"letting go to recognised text in the panel"_s, stage.recognized);
    report += row(u"letting go to request bytes"_s, stage.request);
    report += u"  resident program: %1 MB anonymous before, %2 MB after; recognition libraries mapped: %3\n\n"_s
                  .arg(before.anonymousMegabytes, 0, 'f', 1)
                  .arg(after.anonymousMegabytes, 0, 'f', 1)
                  .arg(recognition);
    return report;
}

} // namespace orvesa::benchmark
