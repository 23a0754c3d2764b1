// The product's panel over a real application: what it shows, and that it disturbs nothing.

#include "desktop/ProgramFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceRequest;
using service::ServiceResponse;

class ProgramPanel : public ProgramFixture, public ::testing::WithParamInterface<WindowManager> {
protected:
    void SetUp() override
    {
        DesktopOptions options;
        options.windowManager = GetParam();
        setUp(options);
    }
};

INSTANTIATE_TEST_SUITE_P(Managers, ProgramPanel, ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto &parameter) {
                             return parameter.param == WindowManager::openbox ? "openbox" : "xfwm4";
                         });

TEST_P(ProgramPanel, ShowsTheAnswerAndDisturbsNothing)
{
    service.setScript({answer(u"  The house is big.\n"_s)});
    program->start();
    editor = std::make_unique<TextEditor>(*desktop, u"kept"_s);
    editor->selectAll();
    desktop->keyboard().press(u"Ctrl+c"_s);
    desktop->selections().awaitText(Selection::clipboard, u"kept"_s);
    editor->replaceText(u"La casa es grande."_s);
    desktop->pointer().moveTo(editor->middle());
    const int clipboardChanges = desktop->selections().changes(Selection::clipboard);
    const int primaryChanges = desktop->selections().changes(Selection::primary);

    pressTranslate();
    EXPECT_EQ(awaitResultWith(u"house"_s), u"The house is big."_s);
    EXPECT_EQ(program->panelTitle(), u"Translate → English"_s);
    EXPECT_EQ(program->source(), u"La casa es grande."_s);

    EXPECT_TRUE(editor->isInUse());
    EXPECT_EQ(desktop->selections().changes(Selection::clipboard), clipboardChanges);
    EXPECT_EQ(desktop->selections().changes(Selection::primary), primaryChanges);
    EXPECT_EQ(desktop->selections().text(Selection::clipboard), u"kept"_s);
    EXPECT_EQ(desktop->selections().text(Selection::primary), u"La casa es grande."_s);
    EXPECT_EQ(editor->content().selectedText(), u"La casa es grande."_s);

    const xcb_window_t panel = program->awaitPanel();
    EXPECT_TRUE(desktop->windows().isAbove(panel, editor->window()));
    EXPECT_TRUE(QRect(QPoint(0, 0), desktop->options().screenSize).contains(desktop->windows().geometry(panel)));

    // The next key goes to the editor.
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return editor->content().text() == u"x"_s; }, u"the editor to take the key"_s);
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

TEST_P(ProgramPanel, ReadsTheSelectionWhileTheShortcutIsHeld)
{
    // As fingers do it: the keys are down for longer than the program needs to read the selection, and repeat.
    service.setResponder([](const ServiceRequest &) { return answer(u"held"_s); });
    startOver(u"pulsado"_s);
    desktop->keyboard().keyDown(u"Alt"_s);
    desktop->keyboard().keyDown(u"d"_s);
    awaitResultWith(u"held"_s);
    processEventsFor(std::chrono::milliseconds(900)); // the server repeats held keys after 660 ms
    desktop->keyboard().keyUp(u"d"_s);
    desktop->keyboard().keyUp(u"Alt"_s);
    EXPECT_EQ(program->result(), u"held"_s);
    EXPECT_EQ(service.requests().size(), 1U);
    EXPECT_EQ(editor->content().text(), u"pulsado"_s);
    waitUntil([&] { return editor->isInUse(); }, u"the editor to be in use again"_s);
}

TEST_P(ProgramPanel, StaysAboveTheEditorThatIsClickedAndHides)
{
    service.setScript({answer(u"done"_s)});
    startOver(u"hecho"_s);
    pressTranslate();
    awaitResultWith(u"done"_s);
    const xcb_window_t panel = program->awaitPanel();
    // Inside: it stays. Outside: it goes.
    const QRect shown = desktop->windows().geometry(panel);
    desktop->pointer().clickAt(QPoint(shown.center().x(), shown.bottom() - 8));
    processEventsFor(std::chrono::milliseconds(150));
    EXPECT_TRUE(desktop->windows().isMapped(panel));
    desktop->pointer().clickAt(desktop->windows().geometry(editor->window()).topLeft() + QPoint(30, 120));
    desktop->windows().awaitNoWindow({.pid = program->process().pid()});
    desktop->windows().awaitActive(editor->window());
}

TEST_P(ProgramPanel, ASecondPressCancelsTheFirstRequestOnTheWire)
{
    service.setScript({ServiceResponse::silence(), answer(u"the second"_s)});
    startOver(u"primero"_s);
    pressTranslate();
    ASSERT_TRUE(service.waitForRequests(1));
    waitUntil([&] { return program->source() == u"primero"_s; }, u"the panel of the first press"_s);
    EXPECT_TRUE(service.closedConnections().empty());

    editor->replaceText(u"segundo"_s);
    pressTranslate();
    EXPECT_EQ(awaitResultWith(u"second"_s), u"the second"_s);
    EXPECT_EQ(program->source(), u"segundo"_s);
    ASSERT_TRUE(service.waitUntil([&] { return !service.closedConnections().empty(); }));
    const service::ClosedConnection closed = service.closedConnections().front();
    EXPECT_EQ(closed.connection, service.requests().front().connection);
    EXPECT_EQ(closed.closedBy, service::ClosedConnection::Side::peer);
    EXPECT_EQ(service.requests().size(), 2U);
}

TEST_P(ProgramPanel, ShowsHypertextAsText)
{
    const QString hostile = u"<b>bold</b> &amp; <img src='file:///etc/hostname'><script>x</script>"_s;
    service.setScript({answer(hostile), ServiceResponse::text(500, "<h1>Broken</h1>", "text/html")});
    startOver(u"<i>cursiva</i>"_s);
    pressTranslate();
    EXPECT_EQ(awaitResultWith(u"bold"_s), hostile);
    EXPECT_EQ(program->source(), u"<i>cursiva</i>"_s);
    pressTranslate();
    const QString failure = awaitResultWith(u"Broken"_s);
    EXPECT_TRUE(failure.startsWith(u"API request failed: "_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"<h1>Broken</h1>"_s)) << failure.toStdString();
}

} // namespace orvesa::desktop
