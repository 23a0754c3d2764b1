// The panel under the user's hands: clicks, keys, dragging, desktops, full screen, and what a screen reader hears.

#include "desktop/AnnouncementListener.h"
#include "desktop/PanelFixture.h"

#include <QScopeGuard>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramPanelUse : public PanelFixture, public ::testing::WithParamInterface<WindowManager> {
protected:
    void SetUp() override
    {
        DesktopOptions options;
        options.windowManager = GetParam();
        showAnswer(options);
    }

    /// A place in the editor's text that the panel does not cover.
    QPoint inEditor() { return desktop->windows().geometry(editor->window()).topLeft() + QPoint(30, 120); }

    void switchToDesktop(quint32 number)
    {
        xcb_connection_t *connection = xcb_connect(desktop->display().toUtf8().constData(), nullptr);
        const auto disconnect = qScopeGuard([connection] { xcb_disconnect(connection); });
        const QByteArray name = "_NET_CURRENT_DESKTOP";
        xcb_intern_atom_reply_t *atom = xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, static_cast<quint16>(name.size()), name.constData()), nullptr);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = desktop->windows().root();
        message.type = atom->atom;
        message.data.data32[0] = number;
        xcb_send_event(connection, 0, desktop->windows().root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        xcb_flush(connection);
        std::free(atom);
        waitUntil(
            [&] {
                return desktop->windows().cardinals(desktop->windows().root(), name) == std::vector<quint32>{number};
            },
            u"the other desktop"_s);
    }
};

INSTANTIATE_TEST_SUITE_P(Managers, ProgramPanelUse, ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto &parameter) {
                             return parameter.param == WindowManager::openbox ? "openbox" : "xfwm4";
                         });

TEST_P(ProgramPanelUse, GoesOnEveryClickElsewhereAndOnNoWheelTurn)
{
    Pointer &pointer = desktop->pointer();
    for (const QPoint place : {inEditor(), frame().center()}) {
        pointer.moveTo(place);
        pointer.click(MouseButton::wheelDown);
        pointer.click(MouseButton::wheelUp);
        EXPECT_TRUE(staysShown());
    }
    for (const MouseButton button : {MouseButton::left, MouseButton::right, MouseButton::middle}) {
        pointer.clickAt(QPoint(frame().center().x(), frame().bottom() - 4), button);
        EXPECT_TRUE(staysShown()) << "inside, button " << static_cast<int>(button);
        pointer.clickAt(inEditor(), button);
        awaitHidden();
        if (button == MouseButton::right) { // it opened a menu there
            const auto windows = [this] { return desktop->windows().mapped({.pid = editor->process().pid()}).size(); };
            waitUntil([&] { return windows() == 2; }, u"the editor's menu"_s);
            desktop->keyboard().press(u"Escape"_s);
            waitUntil([&] { return windows() == 1; }, u"the menu to close"_s);
        }
        showAgain();
    }
}

TEST_P(ProgramPanelUse, GoesOnAClickInTheSettingsWindow)
{
    EXPECT_EQ(program->run({}).exitCode, 0);
    const xcb_window_t settings =
        desktop->windows().awaitWindow({.pid = program->process().pid(), .title = u"Settings"_s});
    desktop->windows().awaitActive(settings);
    showAgain();
    desktop->windows().moveResize(settings, QRect(20, 500, 780, 380));
    waitUntil([&] { return desktop->windows().geometry(settings).left() < 60; }, u"the settings window to move"_s);
    ASSERT_FALSE(frame().intersects(QRect(20, 840, 100, 40)));
    desktop->pointer().clickAt(QPoint(60, 860));
    awaitHidden();
    EXPECT_TRUE(desktop->windows().isMapped(settings));
}

TEST_P(ProgramPanelUse, TakesTheKeyboardWhenItIsClickedAndGivesItBack)
{
    EXPECT_TRUE(editor->isInUse());
    desktop->pointer().clickAt(middleOf(u"Result"_s));
    desktop->windows().awaitActive(panel);
    waitUntil([this] { return focusedControl() == u"Result"_s; }, u"the answer to have the keyboard"_s);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->keyboard().press(u"Ctrl+c"_s);
    desktop->selections().awaitText(Selection::clipboard, u"The house is big."_s);
    desktop->keyboard().type(u"x"_s);
    desktop->keyboard().press(u"Escape"_s);
    awaitHidden();
    waitUntil([this] { return editor->isInUse(); }, u"the editor to have the keyboard back"_s);
    EXPECT_EQ(editor->content().text(), u"La casa es grande."_s);
}

TEST_P(ProgramPanelUse, APhraseOfTheAnswerIsCapturedAsAnyOther)
{
    desktop->keyboard().press(u"Ctrl+c"_s);
    desktop->selections().awaitText(Selection::clipboard, u"La casa es grande."_s);
    desktop->pointer().clickAt(middleOf(u"Result"_s));
    desktop->windows().awaitActive(panel);
    waitUntil([this] { return focusedControl() == u"Result"_s; }, u"the answer to have the keyboard"_s);
    desktop->keyboard().press(u"Ctrl+Home"_s);
    for (int letter = 0; letter < u"The house"_s.size(); ++letter) {
        desktop->keyboard().press(u"Shift+Right"_s);
    }
    waitUntil([this] { return control(u"Result"_s).selectedText() == u"The house"_s; }, u"the phrase"_s);
    service.setResponder([](const service::ServiceRequest &) { return answer(u"That dwelling"_s); });
    desktop->keyboard().press(u"Alt+s"_s);
    EXPECT_EQ(awaitResultWith(u"dwelling"_s), u"That dwelling"_s);
    EXPECT_EQ(program->source(), u"The house"_s);
    ASSERT_EQ(service.requests().size(), 2U);
    EXPECT_TRUE(service.requests().back().body.contains("The house"));
    EXPECT_FALSE(service.requests().back().body.contains("is big"));
    desktop->selections().awaitText(Selection::clipboard, u"La casa es grande."_s);
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

TEST_P(ProgramPanelUse, LeadsTheKeyboardThroughItsControlsInReadingOrder)
{
    desktop->pointer().clickAt(middleOf(u"Original"_s));
    desktop->windows().awaitActive(panel);
    waitUntil([this] { return focusedControl() == u"Original"_s; }, u"the source text to have the keyboard"_s);
    for (const QString &next :
         {u"Result"_s, u"Copy Result"_s, u"Retry"_s, u"Target Language"_s, u"Close"_s, u"Original"_s}) {
        desktop->keyboard().press(u"Tab"_s);
        EXPECT_TRUE(happensWithin(usualDeadline, [&] { return focusedControl() == next; }))
            << "not " << next.toStdString() << " but " << focusedControl().toStdString();
    }
    // Escape closes it whatever in it has the keyboard.
    desktop->keyboard().press(u"Shift+Tab"_s);
    desktop->keyboard().press(u"Shift+Tab"_s);
    EXPECT_TRUE(happensWithin(usualDeadline, [&] { return focusedControl() == u"Target Language"_s; }));
    desktop->keyboard().press(u"Escape"_s);
    awaitHidden();
}

TEST_P(ProgramPanelUse, IsDraggedByItsHeaderAndStaysThere)
{
    const QRect before = frame();
    const QPoint way(120, 90);
    const QPoint start = inHeader();
    desktop->pointer().moveTo(start);
    desktop->pointer().press(MouseButton::left);
    // The first movement, which is a large one here, starts the drag; the window manager then takes the pointer over,
    // and only what comes after that moves the panel. So the hand trembles until the panel does.
    waitUntil(
        [&] {
            const QPoint place = start + QPoint(30, 20);
            desktop->pointer().moveTo(place + (desktop->pointer().position() == place ? QPoint(1, 1) : QPoint()));
            return frame() != before;
        },
        u"the drag to begin"_s);
    desktop->pointer().moveTo(start + way);
    EXPECT_TRUE(happensWithin(usualDeadline, [&] { return frame().topLeft() == before.topLeft() + way; }))
        << "the panel does not stay under the pointer: " << frame().x() - before.x() << ' ' << frame().y() - before.y();
    desktop->pointer().release(MouseButton::left);
    EXPECT_TRUE(staysShown());
    const QRect dragged = frame();
    EXPECT_EQ(dragged.size(), before.size());
    // A click alone moves nothing, and the controls still work after both.
    desktop->pointer().clickAt(inHeader());
    EXPECT_TRUE(staysShown());
    EXPECT_EQ(frame(), dragged);
    desktop->pointer().clickAt(middleOf(u"Copy Result"_s));
    desktop->selections().awaitText(Selection::clipboard, u"The house is big."_s);
    desktop->pointer().clickAt(middleOf(u"Retry"_s));
    ASSERT_TRUE(service.waitForRequests(2));
    awaitResultWith(u"house"_s);
    EXPECT_EQ(frame().topLeft(), dragged.topLeft());
}

TEST_P(ProgramPanelUse, ThePickersListIsPartOfIt)
{
    desktop->pointer().clickAt(middleOf(u"Target Language"_s));
    const auto windows = [this] { return desktop->windows().mapped({.pid = program->process().pid()}); };
    waitUntil([&] { return windows().size() == 2; }, u"the picker's list"_s);
    const auto all = windows();
    const xcb_window_t list = *std::ranges::find_if(all, [this](xcb_window_t window) { return window != panel; });
    // Three languages, Japanese in the middle.
    desktop->pointer().clickAt(desktop->windows().geometry(list).center());
    ASSERT_TRUE(service.waitForRequests(2));
    waitUntil([&] { return program->panelTitle() == u"Translate → Japanese"_s; }, u"the other title"_s);
    EXPECT_TRUE(isShown());
    // A click that only closes the list leaves the panel.
    awaitResultWith(u"house"_s);
    desktop->pointer().clickAt(middleOf(u"Target Language"_s));
    waitUntil([&] { return windows().size() == 2; }, u"the picker's list again"_s);
    desktop->pointer().clickAt(inEditor());
    waitUntil([&] { return windows().size() == 1; }, u"the list to close"_s);
    EXPECT_TRUE(staysShown());
    EXPECT_EQ(service.requests().size(), 2U);
}

TEST_P(ProgramPanelUse, IsOnEveryDesktopAndAboveFullScreen)
{
    ASSERT_GT(desktop->windows().cardinals(desktop->windows().root(), "_NET_NUMBER_OF_DESKTOPS").at(0), 1U);
    switchToDesktop(1);
    waitUntil([&] { return !desktop->windows().isMapped(editor->window()); }, u"the editor to be left behind"_s);
    EXPECT_TRUE(staysShown());
    switchToDesktop(0);
    waitUntil([&] { return desktop->windows().isMapped(editor->window()); }, u"the editor"_s);
    EXPECT_TRUE(isShown());
    const auto states = desktop->windows().atoms(panel, "_NET_WM_STATE");
    EXPECT_TRUE(states.contains("_NET_WM_STATE_SKIP_TASKBAR")) << states.join(' ').constData();
    EXPECT_TRUE(states.contains("_NET_WM_STATE_SKIP_PAGER")) << states.join(' ').constData();

    desktop->windows().focus(editor->window());
    desktop->keyboard().press(u"F11"_s);
    waitUntil(
        [&] {
            return desktop->windows().geometry(editor->window()).size() == desktop->options().screenSize &&
                   desktop->windows().atoms(editor->window(), "_NET_WM_STATE").contains("_NET_WM_STATE_FULLSCREEN");
        },
        u"the editor to fill the screen"_s);
    showAgain();
    EXPECT_TRUE(happensWithin(usualDeadline, [&] { return desktop->windows().isAbove(panel, editor->window()); }));
    EXPECT_EQ(desktop->windows().active(), editor->window());
    EXPECT_EQ(desktop->windows().inputFocus(), editor->window());
    EXPECT_TRUE(desktop->windows().atoms(editor->window(), "_NET_WM_STATE").contains("_NET_WM_STATE_FULLSCREEN"));
}

TEST_P(ProgramPanelUse, ComesAgainWithoutTakingTheKeyboard)
{
    // While it is still there: by the shortcut elsewhere, and by a retry where it is.
    const QPoint before = frame().topLeft();
    desktop->pointer().moveTo(QPoint(200, 500));
    pressTranslate();
    ASSERT_TRUE(service.waitForRequests(2));
    waitUntil([&] { return frame().topLeft() != before; }, u"the panel to move"_s);
    awaitResultWith(u"house"_s);
    EXPECT_TRUE(editor->isInUse());
    const QPoint moved = frame().topLeft();
    EXPECT_EQ(moved, QPoint(212, 512));
    desktop->pointer().moveTo(QPoint(600, 100));
    ASSERT_TRUE(control(u"Retry"_s).doAction());
    ASSERT_TRUE(service.waitForRequests(3));
    awaitResultWith(u"house"_s);
    EXPECT_TRUE(staysShown());
    EXPECT_EQ(frame().topLeft(), moved);
    EXPECT_TRUE(editor->isInUse());
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return editor->content().text() == u"x"_s; }, u"the editor to take the key"_s);
}

TEST_P(ProgramPanelUse, IsReadAndOperatedByAScreenReader)
{
    AnnouncementListener listener(desktop->accessibilityBusAddress());
    const Accessible window = program->panel();
    EXPECT_EQ(window.role(), u"dialog"_s);
    EXPECT_EQ(window.name(), u"Translate → English"_s);
    EXPECT_EQ(program->source(), u"La casa es grande."_s);
    EXPECT_EQ(program->result(), u"The house is big."_s);
    EXPECT_EQ(control(u"Target Language"_s).role(), u"combo box"_s);

    ASSERT_TRUE(control(u"Copy Result"_s).doAction());
    desktop->selections().awaitText(Selection::clipboard, u"The house is big."_s);
    const QString copied = u"Result copied to clipboard."_s;
    waitUntil([&] { return listener.heard().contains(copied); }, u"the copy to be announced"_s);
    EXPECT_TRUE(program->panel().find(u"label"_s, copied));

    service.setResponder([](const service::ServiceRequest &) { return answer(u"家は大きい。"_s); });
    ASSERT_TRUE(control(u"Target Language"_s).doAction(u"Japanese"_s));
    EXPECT_EQ(awaitResultWith(u"家"_s), u"家は大きい。"_s);
    waitUntil([&] { return listener.heard().contains(u"家は大きい。"_s); }, u"the answer to be announced"_s);
    EXPECT_EQ(program->panelTitle(), u"Translate → Japanese"_s);

    service.setResponder([](const service::ServiceRequest &) { return service::ServiceResponse::text(503, "busy"); });
    ASSERT_TRUE(control(u"Retry"_s).doAction());
    const QString failure = awaitResultWith(u"busy"_s);
    waitUntil([&] { return listener.heard().contains(failure); }, u"the failure to be announced"_s);
    EXPECT_FALSE(control(u"Copy Result"_s).has(AccessibleState::enabled));
    ASSERT_TRUE(control(u"Close"_s).doAction());
    awaitHidden();
}

} // namespace orvesa::desktop
