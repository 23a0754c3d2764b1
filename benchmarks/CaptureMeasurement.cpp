#include "CaptureMeasurement.h"

#include "Core/AppMenuItemService.h"
#include "Core/TextSelectionService.h"
#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIElementHandle.h"
#include "Platform/linux/ATSPIElements.h"
#include "Platform/linux/ATSPITrust.h"
#include "Platform/QtClock.h"
#include "Platform/linux/X11KeyboardEvents.h"
#include "Platform/linux/X11Pasteboard.h"
#include "Platform/linux/X11Workspace.h"
#include "fakes/Awaited.h"

#include <QElapsedTimer>

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;

QString documentText()
{
    return u"Hoy hace buen tiempo y el tren lleg\u00f3 a la hora."_s;
}

/// Counts the questions that are asked of an application.
class CountedElements final : public AccessibilityElementsPort {
public:
    explicit CountedElements(AccessibilityElementsPort &elements) : m_elements(elements) {}

    AccessibilityElement systemWide() override { return m_elements.systemWide(); }
    AccessibilityElement application(qint64 processIdentifier) override
    {
        m_application = m_elements.application(processIdentifier);
        return m_application;
    }
    AccessibilityValue copyAttribute(const AccessibilityElement &element, const QString &attribute) override
    {
        return m_elements.copyAttribute(element, attribute);
    }
    bool performAction(const AccessibilityElement &element, const QString &action) override
    {
        return m_elements.performAction(element, action);
    }

    [[nodiscard]] double calls() const
    {
        const auto *const handle = dynamic_cast<const ATSPIElementHandle *>(m_application.get());
        return handle == nullptr ? 0 : static_cast<double>(handle->client()->callCount());
    }

private:
    AccessibilityElementsPort &m_elements;
    AccessibilityElement m_application;
};

/// What the program captures with, as it puts it together.
struct Adapters {
    X11Connection shared;
    X11Connection own;
    X11Workspace workspace{shared};
    ATSPIBus bus{shared};
    ATSPIElements elements{bus, workspace};
    ATSPITrust trust;
    X11KeyboardEvents keyboard{own, [](qint64) { return false; }};
    X11Pasteboard pasteboard{own};
    QtClock clock;
};

double millisecondsOf(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsPerMillisecond;
}

ReportRow row(const QString &title, const QString &unit, int decimals, const Samples &samples)
{
    return {.title = title, .unit = unit, .decimals = decimals, .floor = {}, .product = samples, .goal = {}, .met = {}};
}

} // namespace

CaptureMeasurement::CaptureMeasurement()
{
    for (const auto *const name : {"DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"}) {
        qputenv(name, m_desktop.environment().value(QString::fromLatin1(name)).toUtf8());
    }
}

void CaptureMeasurement::measure(ReportTable &table, int rounds)
{
    for (const Application &application :
         {Application{u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s, {}},
          Application{u"gedit"_s, {u"--standalone"_s}, u"Gedit"_s, {}},
          Application{u"gnome-text-editor"_s, {u"--standalone"_s}, u"gnome-text-editor"_s, {}},
          Application{u"featherpad"_s, {u"--standalone"_s}, u"FeatherPad"_s, {}}}) {
        measure(table, application, rounds);
    }
    measureKeystroke(table, rounds);
}

desktop::Process &CaptureMeasurement::open(const Application &application)
{
    const QString path = m_desktop.folders().write(u"home/letter.txt"_s, documentText().toUtf8());
    desktop::Process &process =
        m_desktop.launch(application.name, application.arguments + QStringList{path}, application.changes);
    m_desktop.windows().awaitActive(m_desktop.windows().awaitWindow({.className = application.windowClass}));
    return process;
}

void CaptureMeasurement::measure(ReportTable &table, const Application &application, int rounds)
{
    desktop::Process &process = open(application);
    const desktop::Accessible content = m_desktop.accessibles().await(
        [&] {
            return m_desktop.accessibles().application(process.pid()).find([](const desktop::Accessible &accessible) {
                return accessible.has(desktop::AccessibleState::focused) && accessible.text() == documentText();
            });
        },
        u"the editor"_s);
    m_desktop.keyboard().press(u"Ctrl+a"_s);
    desktop::waitUntil([&] { return content.selectedText() == documentText(); }, u"the selection"_s);

    Adapters adapters;
    CountedElements elements(adapters.elements);
    Samples read;
    Samples lookup;
    Samples calls;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        if (TextSelectionService::selectedTextViaAccessibility(elements) != documentText()) {
            throw std::runtime_error(application.name.toStdString() + " did not tell its selection");
        }
        read.add(millisecondsOf(timer));
        timer.restart();
        (void)AppMenuItemService::find(elements, adapters.workspace, AppMenuItemService::EditAction::copy);
        lookup.add(millisecondsOf(timer));
        calls.add(elements.calls());
    }
    table.add(row(u"capture, accessibility read, "_s + application.name, u"ms"_s, 1, read));
    table.add(row(u"capture, menu lookup, "_s + application.name, u"ms"_s, 1, lookup));
    table.add(row(u"capture, menu lookup calls, "_s + application.name, {}, 0, calls));
    process.terminate();
}

void CaptureMeasurement::measureKeystroke(ReportTable &table, int rounds)
{
    desktop::Process &process =
        open({u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s, {{u"NO_AT_BRIDGE"_s, u"1"_s}}});
    m_desktop.keyboard().press(u"Ctrl+a"_s);
    m_desktop.selections().awaitText(desktop::Selection::primary, documentText());
    Adapters adapters;
    TextSelectionService service({adapters.elements, adapters.trust, adapters.workspace, adapters.keyboard,
                                  adapters.pasteboard, adapters.clock});
    Samples captured;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        if (awaited(service.currentSelectedText()) != documentText()) {
            throw std::runtime_error("the keystroke copied something else");
        }
        captured.add(millisecondsOf(timer));
    }
    table.add(row(u"capture, copy keystroke, of it 50 wait"_s, u"ms"_s, 1, captured));
    process.terminate();
}

} // namespace orvesa::benchmark
