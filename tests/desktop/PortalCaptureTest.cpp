// The capture under Wayland: through the desktop's portal, which takes the picture itself.

#include "desktop/Desktop.h"
#include "desktop/ScreenshotPortal.h"
#include "desktop/TranslateProgram.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class PortalCapture : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(QFileInfo::exists(path), expectsFile); }

    QString write(const QString &name, qint64 size)
    {
        QFile file(desktop.folders().temporary() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("a picture");
        file.resize(std::max(size, file.size()));
        return file.fileName();
    }
    static QString toolPath()
    {
        return TranslateProgram::pathBeside().replace(u"orvesa-translate"_s, u"orvesa-screencapture"_s);
    }
    Process &start()
    {
        return desktop.launch(toolPath(), {u"-i"_s, u"-x"_s, path},
                              {{u"WAYLAND_DISPLAY"_s, u"wayland-9"_s}, {u"XDG_SESSION_TYPE"_s, u"wayland"_s}});
    }

    Desktop desktop;
    ScreenshotPortal portal{desktop.sessionBusAddress()};
    QString path = desktop.folders().temporary() + u"/capture.png"_s;
    bool expectsFile = false;
};

TEST_F(PortalCapture, TakesThePortalsPicture)
{
    const QString taken = write(u"Screenshot from today.png"_s, 0);
    portal.answer = {.response = 0, .uri = QUrl::fromLocalFile(taken).toString(QUrl::FullyEncoded)};
    EXPECT_EQ(start().awaitEnd().exitCode, 0);
    EXPECT_EQ(portal.requests, 1);
    EXPECT_TRUE(portal.lastOptions.value(u"interactive"_s).toBool());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "a picture");
    EXPECT_EQ(file.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther), QFileDevice::Permissions());
    EXPECT_FALSE(QFileInfo::exists(taken)); // the portal's own copy
    expectsFile = true;
}

TEST_F(PortalCapture, IsCancelledByTheUser)
{
    portal.answer = {.response = 1, .uri = {}};
    const ProcessResult result = start().awaitEnd();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.standardError, "");
}

TEST_F(PortalCapture, SaysWhenThePortalGaveUp)
{
    portal.answer = {.response = 2, .uri = {}};
    const ProcessResult result = start().awaitEnd();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("ended without a picture")) << result.standardError.constData();
}

TEST_F(PortalCapture, TakesFilesOfThisMachineAlone)
{
    portal.answer = {.response = 0, .uri = u"https://example.org/picture.png"_s};
    const ProcessResult result = start().awaitEnd();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("gave no file")) << result.standardError.constData();
}

TEST_F(PortalCapture, LeavesX11SessionsToThemselves)
{
    // The variable is of an earlier session of the same user.
    Process &tool = desktop.launch(toolPath(), {u"-i"_s, u"-x"_s, path},
                                   {{u"WAYLAND_DISPLAY"_s, u"wayland-9"_s}, {u"XDG_SESSION_TYPE"_s, u"x11"_s}});
    desktop.windows().awaitWindow({.pid = tool.pid()});
    EXPECT_EQ(portal.requests, 0);
    tool.requestEnd();
    (void)tool.awaitEnd();
}

TEST_F(PortalCapture, RefusesAHugeFile)
{
    const QString taken = write(u"huge.png"_s, qint64{65} * 1024 * 1024);
    portal.answer = {.response = 0, .uri = QUrl::fromLocalFile(taken).toString()};
    const ProcessResult result = start().awaitEnd();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("too large")) << result.standardError.constData();
}

TEST_F(PortalCapture, WaitsForTheUserAndEndsWhenToldTo)
{
    Process &tool = start();
    waitUntil([this] { return portal.requests == 1; }, u"the request"_s);
    // Longer than the call itself may take, which has been answered.
    processEventsFor(std::chrono::milliseconds(5'500));
    EXPECT_TRUE(tool.isRunning());
    tool.requestEnd();
    (void)tool.awaitEnd();
}

} // namespace orvesa::desktop
