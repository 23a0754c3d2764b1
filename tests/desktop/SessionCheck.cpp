#include "desktop/SessionCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iostream>
#include <utility>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds loginDeadline{90'000};
constexpr std::chrono::milliseconds slowDeadline{60'000};
const QString settingsTitle = u"Orvesa Translate Settings"_s;
const QString overlayClass = u"orvesa-screencapture"_s;

/// A user's own copy, which has to be there afterwards.
const QString copiedText = u"Copied before the check"_s;
const QString document = u"The old library of the city has many books and maps."_s;

void require(bool condition, const QString &otherwise)
{
    if (!condition)
        throw DesktopError(otherwise);
}

/// Whether there is more than one colour in it, on a grid that meets every panel.
bool showsSomething(const QImage &screen)
{
    constexpr int step = 5;
    for (int y = 0; y < screen.height(); y += step)
        for (int x = 0; x < screen.width(); x += step)
            if (screen.pixel(x, y) != screen.pixel(0, 0))
                return true;
    return false;
}

QString describe(Windows &windows, xcb_window_t window)
{
    return u"0x%1 '%2' (%3)"_s.arg(window, 0, 16)
        .arg(windows.title(window), windows.className(window).replace(u'\n', u'/'));
}

} // namespace

SessionCheck::SessionCheck(RunningSession &session, SessionCheckOptions options)
    : m_session(session), m_options(std::move(options))
{
}

bool SessionCheck::run()
{
    step(u"started at login"_s, [this] { startsAtLogin(); });
    if (m_options.isAskedForAccessibility)
        step(u"asks for accessibility"_s, [this] { asksForAccessibility(); });
    step(u"in the tray"_s, [this] { isInTheTray(); });
    step(u"an editor opens"_s, [this] { opensTheEditor(); });
    if (m_content.isNull())
        return false; // all others would fail for this reason
    step(u"text is copied, and other text selected"_s, [this] { selectsInTheEditor(); });
    step(u"the shortcut gives the answer"_s, [this] { translates(); });
    step(u"the panel is above, without decoration, on no taskbar"_s, [this] { panelIsAPanel(); });
    step(u"keyboard, selection and clipboard are undisturbed"_s, [this] { nothingIsDisturbed(); });
    step(u"a click elsewhere puts it away"_s, [this] { goesOnAClickElsewhere(); });
    step(u"it takes the keyboard when clicked, and Escape gives it back"_s, [this] { takesTheKeyboardWhenClicked(); });
    step(u"the settings come in front with the keyboard"_s, [this] { opensItsSettings(); });
    if (hasNotifierItem())
        step(u"the tray's menu opens them, too"_s, [this] { settingsByTheTray(); });
    step(u"text of the screen"_s, [this] { readsTheScreen(); });
    step(u"the doctor's page"_s, [this] { hasATrueDoctor(); });
    step(u"the command line has the key"_s, [this] { translatesOnTheCommandLine(); });
    return m_failed == 0;
}

void SessionCheck::step(const QString &name, const std::function<void()> &body)
{
    QElapsedTimer clock;
    clock.start();
    try {
        body();
        std::cout << "   passed  " << name.toStdString() << " (" << clock.elapsed() << " ms)" << std::endl;
    } catch (const std::exception &failure) {
        ++m_failed;
        std::cout << "   FAILED  " << name.toStdString() << ": " << failure.what() << std::endl;
        picture(u"failed"_s);
    }
}

void SessionCheck::picture(const QString &name)
{
    m_session.windows().screenshot(u"%1/%2-%3-%4.png"_s.arg(
        m_options.pictures, m_options.name, QString::number(++m_pictures).rightJustified(2, u'0'), name));
}

void SessionCheck::startsAtLogin()
{
    m_product = m_session.awaitProduct(loginDeadline);
    const QString program = QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(m_product));
    require(program == u"/usr/bin/orvesa-translate"_s, u"it is %1"_s.arg(program));
    waitUntil([this] { return !m_session.windowManagerName().isEmpty(); }, u"the window manager"_s, loginDeadline);
    std::cout << "           window manager: " << m_session.windowManagerName().toStdString() << std::endl;
    waitUntil([this] { return m_session.keyboard().isTaken(u"Alt+d"_s); }, u"its shortcut"_s);
}

void SessionCheck::asksForAccessibility()
{
    const Accessible enable = m_session.accessibles().await(m_product, u"push button"_s, u"Enable"_s, slowDeadline);
    picture(u"asks"_s);
    require(enable.doAction(), u"its button cannot be pressed"_s); // the desktop may be moving the window still
    m_session.windows().awaitNoWindow({.pid = m_product});
}

void SessionCheck::isInTheTray()
{
    const bool takesItems = m_options.tray == SessionTray::notifier || m_options.tray == SessionTray::either;
    const bool embeds = m_options.tray == SessionTray::embedding || m_options.tray == SessionTray::either;
    if (takesItems || embeds)
        waitUntil([&] { return (takesItems && hasNotifierItem()) || (embeds && hasEmbeddedIcon()); },
                  u"its icon in the tray"_s, slowDeadline);
    std::cout << "           " << (hasNotifierItem() ? "StatusNotifierItem" : "embedded") << std::endl;
    if (!m_options.splash.isEmpty())
        waitUntil([this] { return !isShown(m_options.splash); }, u"the desktop's splash to go"_s, loginDeadline);
    awaitStillScreen(); // a desktop that composes the screen is faded in, and takes every click until that is done
    picture(u"tray"_s);
}

void SessionCheck::awaitStillScreen()
{
    QImage before;
    const auto standsStill = [&] {
        processEventsFor(std::chrono::milliseconds(500));
        const QImage now = m_session.windows().picture();
        return showsSomething(now) && now == std::exchange(before, now);
    };
    waitUntil(standsStill, u"the desktop to be drawn"_s, loginDeadline);
}

bool SessionCheck::hasNotifierItem()
{
    const std::vector<TrayItem> items = m_session.tray().items();
    return std::ranges::any_of(items, [this](const TrayItem &item) { return item.pid == m_product; });
}

bool SessionCheck::hasEmbeddedIcon()
{
    return m_session.windows().hasTrayIcon(m_product);
}

bool SessionCheck::isShown(const QString &className)
{
    for (const xcb_window_t window : m_session.windows().mapped())
        if (m_session.windows().className(window).contains(className, Qt::CaseInsensitive))
            return true;
    return false;
}

void SessionCheck::opensTheEditor()
{
    QFile file(QDir::homePath() + u"/document.txt"_s);
    require(file.open(QFile::WriteOnly) && file.write(copiedText.toUtf8()) > 0, u"no document"_s);
    file.close();
    const QString program = m_options.editor.front();
    m_session.launch(program, m_options.editor.mid(1) + QStringList{file.fileName()});
    const auto find = [this] {
        for (const xcb_window_t window : m_session.windows().mapped())
            if (m_session.windows().className(window).contains(m_options.editorClass, Qt::CaseInsensitive) &&
                m_session.windows().title(window).contains(u"document"_s))
                m_editor = window;
        return m_editor != 0;
    };
    waitUntil(find, u"the editor's window"_s, slowDeadline);
    m_editorProcess = m_session.windows().pid(m_editor);
    if (!m_options.dismiss.isEmpty())
        m_session.keyboard().press(m_options.dismiss);
    focusTheEditor();
    m_content = m_session.accessibles().await(
        [this] {
            return m_session.accessibles().application(m_editorProcess).find([](const Accessible &accessible) {
                return accessible.text().trimmed() == copiedText;
            });
        },
        u"the document on the accessibility bus"_s, slowDeadline);
}

void SessionCheck::focusTheEditor()
{
    if (!editorIsInUse())
        m_session.windows().focus(m_editor);
}

void SessionCheck::selectsInTheEditor()
{
    waitUntil([this] { return m_content.has(AccessibleState::focused); }, u"the document to have the keyboard"_s);
    m_session.keyboard().press(u"Ctrl+a"_s);
    waitUntil([this] { return m_content.selectedText().trimmed() == copiedText; }, u"the document to be selected"_s);
    m_session.keyboard().press(u"Ctrl+c"_s);
    m_session.selections().awaitText(Selection::clipboard, copiedText);
    m_session.keyboard().type(document);
    waitUntil([this] { return m_content.text().trimmed() == document; }, u"the typed text"_s, slowDeadline);
    m_session.keyboard().press(u"Ctrl+a"_s);
    waitUntil([this] { return m_content.selectedText().trimmed() == document; }, u"the typed text to be selected"_s);
}

void SessionCheck::pressTheShortcut()
{
    focusTheEditor();
    m_session.pointer().moveTo(middleOfTheEditor());
    m_session.keyboard().press(u"Alt+d"_s);
    waitUntil([this] { return (m_panel = m_session.panelWindow()) != 0; }, u"the panel's window"_s);
    awaitAnswer();
}

void SessionCheck::awaitAnswer()
{
    const auto isThere = [this] { return m_session.panelText(u"Result"_s) == m_options.answer; };
    if (happensWithin(slowDeadline, isThere))
        return;
    const Accessible panel = m_session.panel();
    throw DeadlineError(u"no answer; the panel reads: "_s + (panel ? panel.dump() : u"(it is hidden)"_s));
}

void SessionCheck::translates()
{
    m_clipboardChanges = m_session.selections().changes(Selection::clipboard);
    pressTheShortcut();
    picture(u"panel"_s);
    require(m_session.panelText(u"Original"_s) == document, u"it shows: "_s + m_session.panelText(u"Original"_s));
}

void SessionCheck::panelIsAPanel()
{
    Windows &windows = m_session.windows();
    require(m_panel != 0, u"there is no panel"_s);
    require(windows.isAbove(m_panel, m_editor), u"the editor is above it"_s);
    const QList<QByteArray> states = windows.atoms(m_panel, "_NET_WM_STATE");
    for (const char *state : {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"})
        require(states.contains(state),
                u"it lacks %1: %2"_s.arg(QString::fromLatin1(state), QString::fromLatin1(states.join(' '))));
    require(windows.frameGeometry(m_panel) == windows.geometry(m_panel), u"it has a frame"_s);
    require(QRect(QPoint(), windows.picture().size()).contains(windows.geometry(m_panel)), u"it leaves the screen"_s);
}

void SessionCheck::nothingIsDisturbed()
{
    require(editorIsInUse(), u"active is %1, the keyboard is with %2"_s.arg(
                                 describe(m_session.windows(), m_session.windows().active()),
                                 describe(m_session.windows(), m_session.windows().inputFocus())));
    require(m_content.selectedText().trimmed() == document, u"the selection changed"_s);
    require(m_session.selections().text(Selection::clipboard) == copiedText, u"the clipboard has something else"_s);
    const int changes = m_session.selections().changes(Selection::clipboard) - m_clipboardChanges;
    std::cout << "           changes of the clipboard's owner: " << changes << std::endl;
}

void SessionCheck::awaitPanelGone()
{
    waitUntil([this] { return m_session.panelWindow() == 0; }, u"the panel to go"_s);
}

void SessionCheck::goesOnAClickElsewhere()
{
    const QRect editor = m_session.windows().geometry(m_editor);
    const QRect panel = m_session.windows().geometry(m_panel);
    QPoint place = editor.center();
    for (const QPoint &candidate : {editor.center(), QPoint(editor.center().x(), editor.bottom() - editor.height() / 6),
                                    QPoint(editor.left() + editor.width() / 6, editor.center().y()),
                                    QPoint(editor.right() - editor.width() / 6, editor.center().y())})
        if (!panel.contains(candidate))
            place = candidate;
    m_session.pointer().clickAt(place);
    awaitPanelGone();
    waitUntil([this] { return m_content.selectedText().isEmpty(); }, u"the editor to have the click"_s);
    require(editorIsInUse(), u"the editor lost the keyboard"_s);
}

void SessionCheck::takesTheKeyboardWhenClicked()
{
    m_session.keyboard().press(u"Ctrl+a"_s);
    waitUntil([this] { return m_content.selectedText().trimmed() == document; }, u"the text to be selected"_s);
    pressTheShortcut();
    const QRect result =
        m_session.panel()
            .find([](const Accessible &element) {
                return element.name() == u"Result"_s && !element.text().isEmpty() && element.text() != u"Result"_s;
            })
            .extents();
    m_session.pointer().clickAt(result.center());
    waitUntil([this] { return m_session.windows().inputFocus() == m_panel; }, u"the panel to have the keyboard"_s);
    m_session.keyboard().press(u"Escape"_s);
    awaitPanelGone();
    waitUntil([this] { return editorIsInUse(); }, u"the editor to have the keyboard again"_s);
}

void SessionCheck::opensItsSettings()
{
    focusTheEditor();
    const ProcessResult asked = m_session.runToEnd(u"orvesa-translate"_s, {}, usualDeadline);
    require(asked.exitCode == 0, u"a second start fails"_s);
    const xcb_window_t window =
        m_session.windows().awaitWindow({.pid = m_product, .title = settingsTitle}, slowDeadline);
    try {
        m_session.windows().awaitActive(window);
    } catch (const DeadlineError &) {
        throw DesktopError(u"active is "_s + describe(m_session.windows(), m_session.windows().active()));
    }
    require(m_session.windows().isAbove(window, m_editor), u"the editor is above them"_s);
    waitUntil([this] { return !m_session.accessibles().windows(m_product, settingsTitle).empty(); }, u"its content"_s);
    processEventsFor(std::chrono::milliseconds(500)); // a picture of what is painted
    picture(u"settings"_s);
    m_session.windows().close(window);
    m_session.windows().awaitNoWindow({.pid = m_product, .title = settingsTitle});
}

void SessionCheck::settingsByTheTray()
{
    focusTheEditor();
    const TrayItem item = m_session.tray().awaitItem(m_product);
    m_session.tray().click(item, u"Settings…"_s);
    const xcb_window_t window = m_session.windows().awaitWindow({.pid = m_product, .title = settingsTitle});
    waitUntil([&] { return m_session.windows().isMapped(window); }, u"the window"_s);
    m_session.windows().close(window);
    m_session.windows().awaitNoWindow({.pid = m_product, .title = settingsTitle});
}

void SessionCheck::readsTheScreen()
{
    focusTheEditor();
    awaitStillScreen(); // the window that was closed may still be fading, or its place not yet be painted
    // The upper half of its window: not every toolkit tells where its text is.
    const QRect editor = m_session.windows().geometry(m_editor);
    const QRect text = editor.adjusted(2, 2, -2, -editor.height() / 2);
    m_session.keyboard().press(u"Alt+a"_s);
    const xcb_window_t overlay = m_session.windows().awaitWindow({.className = overlayClass});
    waitUntil([&] { return m_session.windows().title(overlay) == u"Screen capture"_s; },
              u"the overlay to have pointer and keyboard"_s);
    picture(u"overlay"_s);
    m_session.pointer().drag(text.topLeft(), text.bottomRight());
    awaitAnswer();
    picture(u"screen-text"_s);
    const QString read = m_session.panelText(u"Original"_s);
    require(read.contains(u"old library of the city"_s), u"it read: "_s + read);
    m_session.pointer().clickAt(middleOfTheEditor());
    m_session.keyboard().press(u"Escape"_s);
    awaitPanelGone();
}

void SessionCheck::hasATrueDoctor()
{
    const ProcessResult page = m_session.runToEnd(u"orvesa-translate"_s, {u"doctor"_s}, slowDeadline);
    const QString text = QString::fromUtf8(page.standardOutput);
    QFile file(u"%1/%2-doctor.txt"_s.arg(m_options.pictures, m_options.name));
    require(file.open(QFile::WriteOnly) && file.write(page.standardOutput) >= 0, u"the page cannot be kept"_s);
    for (const QString &line : m_options.doctorLines)
        require(text.contains(line), u"it does not say: %1\n%2"_s.arg(line, text));
}

void SessionCheck::translatesOnTheCommandLine()
{
    const ProcessResult result = m_session.runToEnd(u"orvesa-translate"_s, {u"translate"_s, document}, slowDeadline);
    require(result.exitCode == 0, QString::fromUtf8(result.standardError));
    require(result.standardOutput.trimmed() == m_options.answer.toUtf8(), QString::fromUtf8(result.standardOutput));
}

QPoint SessionCheck::middleOfTheEditor() const
{
    return m_session.windows().geometry(m_editor).center();
}

bool SessionCheck::editorIsInUse() const
{
    return m_session.windows().active() == m_editor && m_session.windows().inputFocus() == m_editor;
}

} // namespace orvesa::desktop
