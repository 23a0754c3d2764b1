#include "CaptureMeasurement.h"

#include "Core/AppMenuItemService.h"
#include "Core/TextSelectionService.h"
#include "Models/AppError.h"
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
constexpr std::chrono::seconds heavyBound{60};
constexpr int mostAttempts = 30;

QString documentText()
{
    return u"Hoy hace buen tiempo y el tren lleg\u00f3 a la hora."_s;
}

/// Counts the questions that are asked of an application. Can keep its selection to itself, so that it is copied.
class CountedElements final : public AccessibilityElementsPort {
public:
    explicit CountedElements(AccessibilityElementsPort &elements) : m_elements(elements) {}
    void hideSelection() { m_hidesSelection = true; }

    AccessibilityElement systemWide() override
    {
        m_last = m_elements.systemWide();
        return m_last;
    }
    AccessibilityElement application(qint64 processIdentifier) override
    {
        m_last = m_elements.application(processIdentifier);
        return m_last;
    }
    AccessibilityValue copyAttribute(const AccessibilityElement &element, const QString &attribute) override
    {
        if (m_hidesSelection && attribute == "AXSelectedText"_L1) {
            return {};
        }
        return m_elements.copyAttribute(element, attribute);
    }
    bool performAction(const AccessibilityElement &element, const QString &action) override
    {
        return m_elements.performAction(element, action);
    }

    /// Since the capture began.
    [[nodiscard]] double calls() const
    {
        const auto *const handle = dynamic_cast<const ATSPIElementHandle *>(m_last.get());
        return handle == nullptr ? 0 : static_cast<double>(handle->client()->callCount());
    }

private:
    AccessibilityElementsPort &m_elements;
    AccessibilityElement m_last; ///< all of one capture count together
    bool m_hidesSelection = false;
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

/// Empty when nothing is selected.
QCoro::Task<QString> textOrNothing(TextSelectionService &service)
{
    try {
        co_return co_await service.currentSelectedText();
    } catch (const AppError &) {
        co_return QString();
    }
}

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
         {Application{u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s, {}, Copies::byMenuItem},
          Application{u"gedit"_s, {u"--standalone"_s}, u"Gedit"_s, {}, Copies::byKeystroke},
          Application{u"gnome-text-editor"_s, {u"--standalone"_s}, u"gnome-text-editor"_s, {}, Copies::byMenuItem},
          Application{u"featherpad"_s, {u"--standalone"_s}, u"FeatherPad"_s, {}, Copies::byMenuItem}}) {
        measure(table, application, rounds);
    }
    measureKeystroke(table, rounds);
}

void CaptureMeasurement::measureHeavy(ReportTable &table, int rounds)
{
    const QString home = m_desktop.folders().home();
    const QString path = m_desktop.folders().write(u"home/letter.txt"_s, documentText().toUtf8());
    m_desktop.folders().write(u"home/f/user.js"_s, "user_pref('browser.aboutwelcome.enabled', false);\n"
                                                   "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
                                                   "user_pref('termsofuse.bypassNotification', true);\n"
                                                   "user_pref('browser.shell.checkDefaultBrowser', false);\n");
    const desktop::ProcessResult converted = m_desktop.runToEnd(
        u"soffice"_s, {u"--headless"_s, u"--convert-to"_s, u"pdf"_s, u"--outdir"_s, home, path}, {}, {}, heavyBound);
    if (converted.exitCode != 0) {
        throw std::runtime_error("no document for the viewer could be made");
    }
    const QString page = u"file://"_s + path;
    for (const Application &application :
         {Application{u"kate"_s, {u"--new"_s, path}, u"kate"_s, {}, Copies::byMenuItem},
          Application{u"chromium"_s,
                      {u"--no-sandbox"_s, u"--no-first-run"_s, u"--disable-gpu"_s, u"--password-store=basic"_s,
                       u"--user-data-dir="_s + home + u"/c"_s, page},
                      u"Chromium"_s,
                      {},
                      Copies::byKeystroke},
          Application{u"firefox-esr"_s,
                      {u"--no-remote"_s, u"--profile"_s, home + u"/f"_s, page},
                      u"firefox-esr"_s,
                      {},
                      Copies::byKeystroke},
          Application{u"soffice"_s,
                      {u"--norestore"_s, u"--nologo"_s, u"--writer"_s, path},
                      u"libreoffice-writer"_s,
                      {},
                      Copies::byKeystroke},
          Application{u"evince"_s, {home + u"/letter.pdf"_s}, u"Evince"_s, {}, Copies::byKeystroke}}) {
        measureHeavy(table, application, rounds);
    }
}

void CaptureMeasurement::measureHeavy(ReportTable &table, const Application &application, int rounds)
{
    desktop::Process &process = m_desktop.launch(application.name, application.arguments, application.changes);
    m_desktop.windows().awaitActive(m_desktop.windows().awaitWindow({.className = application.windowClass}, heavyBound),
                                    heavyBound);
    Adapters adapters;
    CountedElements elements(adapters.elements);
    TextSelectionService service(
        {elements, adapters.trust, adapters.workspace, adapters.keyboard, adapters.pasteboard, adapters.clock});
    // Not each of them says when it is ready or what is selected in it; that it can be captured does.
    bool isReady = false;
    for (int attempt = 0; attempt < mostAttempts && !isReady; ++attempt) {
        m_desktop.keyboard().press(u"Ctrl+a"_s);
        isReady = awaited(textOrNothing(service)).contains(documentText());
    }
    if (!isReady) {
        throw std::runtime_error(application.name.toStdString() + " gave nothing");
    }
    Samples lookup;
    Samples calls;
    for (int round = 0; round < rounds; ++round) {
        (void)TextSelectionService::selectedTextViaAccessibility(elements);
        const double before = elements.calls();
        QElapsedTimer timer;
        timer.start();
        (void)AppMenuItemService::find(elements, adapters.workspace, AppMenuItemService::EditAction::copy);
        lookup.add(millisecondsOf(timer));
        calls.add(elements.calls() - before);
    }
    measureWhole(table, u"capture, "_s + application.name, service, rounds);
    if (application.copies == Copies::byMenuItem) {
        elements.hideSelection();
        measureWhole(table, u"capture, menu item, of it 50 wait, "_s + application.name, service, rounds);
    }
    table.add(row(u"capture, menu lookup, "_s + application.name, u"ms"_s, 1, lookup));
    table.add(row(u"capture, menu lookup calls, "_s + application.name, {}, 0, calls));
    process.terminate();
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
        const double before = elements.calls();
        timer.restart();
        (void)AppMenuItemService::find(elements, adapters.workspace, AppMenuItemService::EditAction::copy);
        lookup.add(millisecondsOf(timer));
        calls.add(elements.calls() - before);
    }
    table.add(row(u"capture, accessibility read, "_s + application.name, u"ms"_s, 1, read));
    table.add(row(u"capture, menu lookup, "_s + application.name, u"ms"_s, 1, lookup));
    table.add(row(u"capture, menu lookup calls, "_s + application.name, {}, 0, calls));
    if (application.copies == Copies::byMenuItem) {
        elements.hideSelection();
        TextSelectionService service(
            {elements, adapters.trust, adapters.workspace, adapters.keyboard, adapters.pasteboard, adapters.clock});
        measureWhole(table, u"capture, menu item, of it 50 wait, "_s + application.name, service, rounds);
    }
    process.terminate();
}

void CaptureMeasurement::measureWhole(ReportTable &table, const QString &title, TextSelectionService &service,
                                      int rounds)
{
    Samples captured;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        if (!awaited(service.currentSelectedText()).contains(documentText())) {
            throw std::runtime_error("something else was captured: " + title.toStdString());
        }
        captured.add(millisecondsOf(timer));
    }
    table.add(row(title, u"ms"_s, 1, captured));
}

void CaptureMeasurement::measureKeystroke(ReportTable &table, int rounds)
{
    desktop::Process &process = open(
        {u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s, {{u"NO_AT_BRIDGE"_s, u"1"_s}}, Copies::byKeystroke});
    m_desktop.keyboard().press(u"Ctrl+a"_s);
    m_desktop.selections().awaitText(desktop::Selection::primary, documentText());
    Adapters adapters;
    TextSelectionService service({adapters.elements, adapters.trust, adapters.workspace, adapters.keyboard,
                                  adapters.pasteboard, adapters.clock});
    measureWhole(table, u"capture, copy keystroke, of it 50 wait"_s, service, rounds);
    process.terminate();
}

} // namespace orvesa::benchmark
