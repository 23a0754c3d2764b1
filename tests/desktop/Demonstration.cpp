#include "desktop/Demonstration.h"

#include "desktop/Desktop.h"
#include "desktop/TextEditor.h"
#include "desktop/TranslateProgram.h"
#include "service/CommandResponder.h"
#include "service/LoopbackService.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

#include <iostream>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

QString paragraph()
{
    return u"La biblioteca de la ciudad tiene muchos libros antiguos. Los estudiantes leen en silencio. Una niña mira "
           u"un mapa "
           u"del mar y bebe agua fría. Hoy es un día tranquilo y la ciudad duerme."_s;
}

/// A user's own copy, which has to be there afterwards.
QString clipboardText()
{
    return u"Copied before the demonstration"_s;
}

} // namespace

Demonstration::Demonstration(QString program, QString screenshot)
    : m_program(std::move(program)), m_screenshot(std::move(screenshot))
{
}

void Demonstration::say(const QString &step) const
{
    std::cout << u"[%1 s] %2"_s.arg(static_cast<double>(m_clock.elapsed()) / 1'000.0, 6, 'f', 2).arg(step).toStdString()
              << std::endl;
}

void Demonstration::run()
{
    m_clock.start();
    if (!QFileInfo(m_program).isExecutable())
        throw DesktopError(u"there is no program at %1"_s.arg(m_program));
    if (QStandardPaths::findExecutable(u"apertium"_s).isEmpty())
        throw DesktopError(u"apertium is not installed (Debian packages apertium and apertium-eng-spa)"_s);
    DesktopOptions options;
    options.tray = Tray::embedding;
    Desktop desktop(options);
    say(u"A private desktop is up: display %1, openbox, session and accessibility bus, key store, tray."_s.arg(
        desktop.display()));
    try {
        show(desktop);
    } catch (...) {
        try {
            desktop.windows().screenshot(m_screenshot);
            say(u"What the screen showed when it failed: %1"_s.arg(QFileInfo(m_screenshot).absoluteFilePath()));
        } catch (const DesktopError &) {
            say(u"The screen could not be saved either."_s);
        }
        throw;
    }
}

void Demonstration::show(Desktop &desktop)
{
    service::LoopbackService service;
    service.setResponder(service::commandResponder(u"apertium"_s, {u"spa-eng"_s}));
    say(u"A stand-in for the language-model service listens at %1."_s.arg(service.address()));
    say(u"It is no language model: it hands each text to Apertium, a rule-based translator, on this machine."_s);

    TranslateProgram program(desktop, m_program);
    program.setService(service.address());
    program.storeKey("demo-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces));
    say(u"A made-up API key is in the desktop's own key store."_s);
    program.start();
    say(u"Orvesa Translate runs; its shortcut is ⌥D, Alt+D on this keyboard."_s);

    TextEditor editor(desktop, clipboardText());
    editor.selectAll();
    desktop.keyboard().press(u"Ctrl+c"_s);
    desktop.selections().awaitText(Selection::clipboard, clipboardText());
    if (!editor.choose(u"Word Wrap"_s))
        throw DesktopError(u"the editor does not wrap its lines"_s);
    editor.replaceText(paragraph());
    say(u"Mousepad holds a Spanish paragraph, typed and selected with real keys."_s);

    pressTheShortcut(desktop, editor, program);
    if (service.requests().size() != 1)
        throw DesktopError(u"the service saw %1 requests in place of one"_s.arg(service.requests().size()));
}

void Demonstration::pressTheShortcut(Desktop &desktop, TextEditor &editor, TranslateProgram &program)
{
    desktop.pointer().moveTo(editor.middle());
    const int clipboardChanges = desktop.selections().changes(Selection::clipboard);
    const int primaryChanges = desktop.selections().changes(Selection::primary);
    QElapsedTimer sincePress;
    sincePress.start();
    desktop.keyboard().press(u"Alt+d"_s);
    say(u"Alt+D is pressed over the editor."_s);
    const xcb_window_t panel = program.awaitPanel();
    const double millisecondsToPanel = static_cast<double>(sincePress.nsecsElapsed()) / 1e6;
    const QString answer = program.awaitResult([](const QString &text) { return !text.isEmpty(); }, u"the answer"_s);
    const double millisecondsToAnswer = static_cast<double>(sincePress.nsecsElapsed()) / 1e6;
    say(u"The panel \"%1\" was up %2 ms and its answer could be read %3 ms after the press."_s.arg(program.panelTitle())
            .arg(millisecondsToPanel, 0, 'f', 1)
            .arg(millisecondsToAnswer, 0, 'f', 1));
    const QString source = program.source();
    say(u"Read from the panel by accessibility:"_s);
    std::cout << "\n    Original  " << source.toStdString() << "\n    Result    " << answer.toStdString() << "\n"
              << std::endl;
    desktop.windows().screenshot(m_screenshot);
    say(u"Screenshot: %1"_s.arg(QFileInfo(m_screenshot).absoluteFilePath()));

    if (source != paragraph())
        throw DesktopError(u"the panel does not show the selected text"_s);
    if (!answer.contains(u"library of the city"_s))
        throw DesktopError(u"the answer is not the translation"_s);
    if (!desktop.windows().isAbove(panel, editor.window()))
        throw DesktopError(u"the panel is not above the editor"_s);
    if (desktop.selections().changes(Selection::clipboard) != clipboardChanges ||
        desktop.selections().changes(Selection::primary) != primaryChanges)
        throw DesktopError(u"a selection was touched"_s);
    checkNothingWasDisturbed(desktop, editor);
}

void Demonstration::checkNothingWasDisturbed(Desktop &desktop, const TextEditor &editor) const
{
    if (!editor.isInUse())
        throw DesktopError(u"the editor has lost the keyboard focus or is no longer the active window"_s);
    if (desktop.selections().text(Selection::clipboard) != clipboardText())
        throw DesktopError(u"the clipboard's content has changed"_s);
    if (desktop.selections().text(Selection::primary) != paragraph())
        throw DesktopError(u"the PRIMARY selection has changed"_s);
    say(u"Mousepad is still the active window with the keyboard; clipboard and PRIMARY are untouched."_s);
}

} // namespace orvesa::desktop
