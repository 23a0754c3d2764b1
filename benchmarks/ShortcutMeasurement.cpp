#include "ShortcutMeasurement.h"

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint besideTheText{300, 300};
constexpr QPoint emptyCorner{1'260, 880};
constexpr std::chrono::milliseconds betweenPresses{150};

double millisecondsSince(qint64 start, qint64 end)
{
    constexpr double nanosecondsPerMillisecond = 1e6;
    return static_cast<double>(end - start) / nanosecondsPerMillisecond;
}

} // namespace

ShortcutMeasurement::ShortcutMeasurement(BenchStage &stage, const desktop::Process &product)
    : m_stage(stage), m_product(product), m_probe(stage.desktop().display())
{
}

PressTimes ShortcutMeasurement::press()
{
    desktop::Keyboard &keyboard = m_stage.desktop().keyboard();
    m_stage.desktop().pointer().moveTo(besideTheText);
    const std::size_t requestsBefore = m_stage.service().requests().size();
    m_probe.clear();

    keyboard.keyDown(u"Alt"_s);
    const qint64 pressed = service::monotonicNanoseconds();
    keyboard.keyDown(u"d"_s);
    // The request comes last or nearly so; until it is there, nothing here asks the X server for anything.
    const bool requested = m_stage.service().waitForRequests(requestsBefore + 1);
    keyboard.keyUp(u"d"_s);
    keyboard.keyUp(u"Alt"_s);
    if (!requested) {
        throw std::runtime_error("the shortcut led to no request; the product said: " +
                                 m_product.standardError().right(2'000).toStdString() + shownTexts().toStdString());
    }
    const WindowTimes window = m_probe.times(m_probe.awaitPaintedWindow(m_stage.desktop().windows(), m_product.pid()));
    const qint64 firstByte = m_stage.service().requests().at(requestsBefore).firstByteNanoseconds;
    dismissPanel();
    return {.mapped = millisecondsSince(pressed, *window.mapped),
            .painted = millisecondsSince(pressed, *window.painted),
            .request = millisecondsSince(pressed, firstByte)};
}

QString ShortcutMeasurement::shownTexts() const
{
    QString texts;
    for (const desktop::Accessible &window : m_stage.desktop().accessibles().windows(m_product.pid())) {
        texts += u'\n' + window.dump();
    }
    return texts;
}

void ShortcutMeasurement::dismissPanel()
{
    BenchStage::awaitRest(m_product, betweenPresses);
    m_stage.desktop().pointer().clickAt(emptyCorner);
    m_stage.desktop().windows().awaitNoWindow({.pid = m_product.pid()});
    // The click on the desktop took the keyboard from the editor.
    m_stage.focusEditor();
    BenchStage::awaitRest(m_product, betweenPresses);
}

} // namespace orvesa::benchmark
