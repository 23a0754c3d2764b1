// The screen action from the shortcut to the panel, with real drags over what other programs show.

#include "desktop/ScreenTextFixture.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

/// A client of its own on the desktop's server.
class Client final {
public:
    explicit Client(const QString &display) : m_connection(xcb_connect(display.toUtf8().constData(), nullptr)) {}
    ~Client() { xcb_disconnect(m_connection); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    [[nodiscard]] xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root; }
    bool grabPointer()
    {
        xcb_grab_pointer_reply_t *reply =
            xcb_grab_pointer_reply(m_connection,
                                   xcb_grab_pointer(m_connection, 0, root(), 0, XCB_GRAB_MODE_ASYNC,
                                                    XCB_GRAB_MODE_ASYNC, 0, 0, XCB_CURRENT_TIME),
                                   nullptr);
        const bool held = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
        free(reply);
        return held;
    }
    void ungrabPointer()
    {
        xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t *m_connection;
};

} // namespace

class ScreenText : public ScreenTextFixture {
protected:
    void expectNothingHappened()
    {
        awaitOverlayGone();
        processEventsFor(std::chrono::milliseconds(300));
        EXPECT_FALSE(program->isPanelShown());
        EXPECT_TRUE(service.requests().empty());
        EXPECT_EQ(captureFiles(), QStringList());
    }
};

TEST_F(ScreenText, TranslatesTheTextOfAPicture)
{
    setUpScreen();
    const QRect area = showPicture(u"ja02"_s, {300, 200});
    startCapture();
    dragAround(area);
    EXPECT_EQ(awaitSource(), u"ファイルの保存に失敗しました。\n空き容量を確認して、もう一度お試しください。"_s);
    EXPECT_EQ(program->panelTitle(), u"Translate → English"_s);
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_TRUE(service.requests().front().body.contains("もう一度お試しください"));
    EXPECT_EQ(captureFiles(), QStringList()) << "the picture goes when it has been read";
}

TEST_F(ScreenText, TranslatesTheTextOfADarkTerminal)
{
    setUpScreen();
    const QString script = desktop->folders().write(
        u"home/run.sh"_s,
        "printf '\\033[2J\\033[H$ make install\\nLinking the program\\nwarning: 2 files were skipped\\n'\n"
        "printf '\\033]0;ready\\007'\ncat\n");
    const Process &terminal =
        desktop->launch(u"xterm"_s, {u"-bg"_s, u"#1d1f27"_s, u"-fg"_s, u"#d5d8df"_s, u"-fa"_s, u"DejaVu Sans Mono"_s,
                                     u"-fs"_s, u"11"_s, u"-geometry"_s, u"60x12+120+120"_s, u"-e"_s, u"sh"_s, script});
    const xcb_window_t window = desktop->windows().awaitWindow({.pid = terminal.pid()});
    waitUntil([&] { return desktop->windows().title(window) == u"ready"_s; }, u"the terminal's text"_s);
    QRect area = desktop->windows().geometry(window);
    area.setHeight(area.height() / 2);
    startCapture();
    dragAround(area, -2);
    EXPECT_EQ(awaitSource(), u"$ make install\nLinking the program\nwarning: 2 files were skipped"_s);
}

TEST_F(ScreenText, ReadsAcrossTwoMonitors)
{
    setUpScreen();
    for (const QStringList &monitor :
         {QStringList{u"left"_s, u"500/130x900/240+0+0"_s}, QStringList{u"right"_s, u"780/210x800/210+500+100"_s}}) {
        const ProcessResult result =
            desktop->runToEnd(u"xrandr"_s, QStringList{u"--setmonitor"_s} + monitor + QStringList{u"none"_s});
        ASSERT_EQ(result.exitCode, 0) << result.standardError.constData();
    }
    const QRect area = showPicture(u"en01"_s, {320, 300}); // over the border
    startCapture();
    dragAround(area);
    EXPECT_TRUE(awaitSource().startsWith(u"The backup finished at 14:32 and copied 1,284 files."_s));
}

TEST_F(ScreenText, LeavesNothingBehindWhenItIsCancelled)
{
    setUpScreen();
    editor = std::make_unique<TextEditor>(*desktop, u"text"_s);
    startCapture();
    desktop->keyboard().press(u"Escape"_s);
    expectNothingHappened();

    startCapture();
    desktop->pointer().moveTo({200, 200});
    desktop->pointer().press(MouseButton::left);
    desktop->pointer().moveTo({400, 300});
    desktop->keyboard().press(u"Escape"_s);
    awaitOverlayGone();
    desktop->pointer().release(MouseButton::left);
    expectNothingHappened();

    startCapture();
    desktop->pointer().clickAt({300, 300}, MouseButton::right);
    expectNothingHappened();

    startCapture();
    desktop->pointer().clickAt({300, 300});
    expectNothingHappened();

    // The keyboard is where it was.
    EXPECT_TRUE(editor->isInUse());
    editor->replaceText(u"typed"_s);
}

TEST_F(ScreenText, SaysWhenThereIsNoText)
{
    setUpScreen();
    startCapture();
    desktop->pointer().drag({500, 500}, {700, 600});
    EXPECT_EQ(awaitResultWith(u"text"_s), u"No text was recognized in the captured area."_s);
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(ScreenText, IsChosenByKeysAlone)
{
    setUpScreen();
    const QRect area = showPicture(u"zh11"_s, {500, 400});
    desktop->pointer().moveTo(area.center());
    startCapture();
    desktop->keyboard().press(u"Left"_s); // 320 by 120 around the pointer
    desktop->keyboard().press(u"Shift+Down"_s);
    desktop->keyboard().press(u"Return"_s);
    EXPECT_EQ(awaitSource(), u"秋天的山路鋪滿了落葉，\n遠處傳來寺廟的鐘聲。"_s);
}

TEST_F(ScreenText, TakesWhatWasOnTheScreenWhenItBegan)
{
    setUpScreen();
    const QRect area = showPicture(u"zh02"_s, {300, 300});
    startCapture();
    // Comes up over the overlay, which comes back over it.
    const Process &late = desktop->launch(QCoreApplication::applicationDirPath() + u"/orvesa-PictureWindow"_s,
                                          {samplePath(u"en01.png"_s), u"300"_s, u"500"_s});
    desktop->windows().awaitWindow({.pid = late.pid()});
    dragAround(area.united(QRect(300, 500, 300, 80)));
    EXPECT_FALSE(awaitSource().contains(u"backup"_s));
}

TEST_F(ScreenText, BeginsAgainOnASecondPress)
{
    setUpScreen();
    const QRect area = showPicture(u"ja07"_s, {300, 200});
    const xcb_window_t first = startCapture();
    program->run({u"--perform"_s, u"ocrTranslate"_s});
    waitUntil([&] { return !desktop->windows().isMapped(first); }, u"the first capture to end"_s);
    awaitOverlay();
    dragAround(area);
    EXPECT_EQ(awaitSource(), u"注文を確定する"_s);
    EXPECT_EQ(service.requests().size(), 1U);
}

TEST_F(ScreenText, WaitsForAGrabToEnd)
{
    setUpScreen();
    const QRect area = showPicture(u"ja07"_s, {300, 200});
    Client other(desktop->display());
    ASSERT_TRUE(other.grabPointer());
    program->run({u"--perform"_s, u"ocrTranslate"_s});
    desktop->windows().awaitWindow({.className = overlayClass});
    processEventsFor(std::chrono::milliseconds(300));
    other.ungrabPointer();
    awaitOverlay();
    dragAround(area);
    EXPECT_EQ(awaitSource(), u"注文を確定する"_s);
}

TEST_F(ScreenText, GivesUpOnAGrabThatStays)
{
    setUpScreen();
    Client other(desktop->display());
    ASSERT_TRUE(other.grabPointer());
    program->run({u"--perform"_s, u"ocrTranslate"_s});
    desktop->windows().awaitWindow({.className = overlayClass});
    expectNothingHappened();
    EXPECT_TRUE(program->process().standardError().contains("another program holds the pointer or the keyboard"));
}

TEST_F(ScreenText, RemovesWhatAKilledRunLeft)
{
    setUp();
    const QString left =
        desktop->folders().temporary() + u"/kestrovander-ocr-0F8FAD5B-D9CB-469F-A165-70867728950E.png"_s;
    QFile file(left);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    program->start();
    waitUntil([&] { return !QFile::exists(left); }, u"the left file to go"_s);
}

TEST_F(ScreenText, IsPrintedByTheCommandLine)
{
    setUp();
    const ProcessResult text = program->run({u"recognize"_s, samplePath(u"zh07.png"_s)}, desktop->withoutDisplay(), {},
                                            std::chrono::seconds(60));
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_EQ(text.standardOutput, "立即更新\n");
    const ProcessResult none = program->run({u"recognize"_s, u"/nowhere.png"_s});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.standardOutput, "");
    EXPECT_EQ(none.standardError, "The image “/nowhere.png” could not be read.\n");
    EXPECT_EQ(program->run({u"recognize"_s}).exitCode, 2);
}

class CaptureTool : public ScreenTextFixture, public ::testing::WithParamInterface<double> {};

INSTANTIATE_TEST_SUITE_P(Scales, CaptureTool, ::testing::Values(1.0, 2.0),
                         [](const auto &parameter) { return parameter.param > 1 ? "double" : "single"; });

TEST_P(CaptureTool, WritesTheChosenPixelsWithTheirScale)
{
    DesktopOptions options;
    options.scale = GetParam();
    setUp(options);
    const QRect area = showPicture(u"en01"_s, {200, 150});
    const QImage before = desktop->windows().picture(area);
    const QString path = desktop->folders().temporary() + u"/capture.png"_s;
    Process &tool = desktop->launch(TranslateProgram::pathBeside().replace(u"orvesa-translate"_s, overlayClass),
                                    {u"-i"_s, u"-x"_s, path});
    awaitOverlay();
    // Dimmed all over, bright again where it is chosen.
    EXPECT_NE(desktop->windows().picture(area), before);
    desktop->pointer().moveTo(area.topLeft());
    desktop->pointer().press(MouseButton::left);
    desktop->pointer().moveTo(area.bottomRight() + QPoint(1, 1));
    QTimer look;
    look.start(std::chrono::milliseconds(10));
    waitUntil([&] { return desktop->windows().picture(area) == before; }, u"the rectangle to be shown"_s);
    desktop->windows().screenshot(QStringLiteral("%1/overlay-%2.png")
                                      .arg(qEnvironmentVariable("ORVESA_SCREENSHOTS", desktop->folders().temporary()))
                                      .arg(GetParam()));
    desktop->pointer().release(MouseButton::left);
    EXPECT_EQ(tool.awaitEnd().exitCode, 0);
    const QImage capture(path);
    EXPECT_EQ(capture.convertToFormat(QImage::Format_RGB32), before.convertToFormat(QImage::Format_RGB32));
    EXPECT_EQ(capture.dotsPerMeterX(), GetParam() > 1 ? 7559 : 3780);
    EXPECT_EQ(QFile::permissions(path) & (QFileDevice::ReadGroup | QFileDevice::ReadOther), QFileDevice::Permissions());
}

TEST_F(ScreenText, NeedsADisplay)
{
    setUp();
    const ProcessResult result =
        desktop->runToEnd(TranslateProgram::pathBeside().replace(u"orvesa-translate"_s, overlayClass),
                          {u"-i"_s, u"-x"_s, u"/tmp/never.png"_s}, desktop->withoutDisplay());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("no display"));
}

TEST_F(ScreenText, NeedsAPortalUnderWayland)
{
    setUp();
    const ProcessResult result =
        desktop->runToEnd(TranslateProgram::pathBeside().replace(u"orvesa-translate"_s, overlayClass),
                          {u"-i"_s, u"-x"_s, u"/tmp/never.png"_s},
                          {{u"WAYLAND_DISPLAY"_s, u"wayland-9"_s}, {u"XDG_SESSION_TYPE"_s, u"wayland"_s}});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("screenshot portal cannot be used")) << result.standardError.constData();
}

} // namespace orvesa::desktop
