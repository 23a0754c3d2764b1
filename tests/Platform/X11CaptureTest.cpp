// Captures by the copy keystroke over the real clipboard of an X server, while other programs do to it what they like.

#include "Core/TextSelectionService.h"
#include "Models/AppError.h"
#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"
#include "Platform/QtClock.h"
#include "Platform/linux/X11Pasteboard.h"
#include "Platform/linux/X11TerminalSelection.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

#include <unistd.h>
#include <xcb/xfixes.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using desktop::Selection;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

const QString imageType = u"image/png"_s;
const PasteboardItem kept{{imageType, {QByteArray("\x89PNG\0\1\2\3", 8), u"image/png/8"_s}},
                          {u"UTF8_STRING"_s, {"kept", u"UTF8_STRING/8"_s}},
                          {u"application/x-orvesa"_s, {QByteArray("\0\xff", 2), u"application/x-orvesa/8"_s}}};

PasteboardItem textItem(const QByteArray &text)
{
    return {{QString::fromLatin1(pasteboardPlainText), {text, QString()}}};
}

/// Another program: a connection and a selection of its own.
struct OtherProgram {
    X11Connection connection;
    X11Pasteboard pasteboard{connection};

    void copy(const PasteboardItem &item) { EXPECT_TRUE(pasteboard.write({item})); }
};

class X11CaptureTest : public ::testing::Test {
protected:
    X11CaptureTest()
    {
        m_ticks.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_ticks, &QTimer::timeout, &m_ticks, [this] {
            m_longestPause = std::max(m_longestPause, m_sinceTick.restart());
            ++m_tickCount;
        });
    }

    /// Runs a capture to its end; the event loop must go on all the while.
    void capture()
    {
        m_text.reset();
        m_isOver = false;
        m_sinceTick.start();
        m_ticks.start(2ms);
        (void)run();
        waitUntil([this] { return m_isOver; }, u"the capture's end"_s);
        m_ticks.stop();
        EXPECT_GT(m_tickCount, 5);
        EXPECT_LT(m_longestPause, 250);
    }
    /// The same while nothing is answered, which the event loop cannot but notice.
    void captureFromABusyServer()
    {
        m_text.reset();
        m_isOver = false;
        (void)run();
        waitUntil([this] { return m_isOver; }, u"the capture's end"_s);
    }
    /// What everybody sees on the clipboard, asked by yet another program.
    std::optional<QByteArray> target(const QString &name)
    {
        const auto result =
            m_desktop->runToEnd(u"xclip"_s, {u"-out"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s, name});
        return result.exitCode == 0 ? std::optional(result.standardOutput) : std::nullopt;
    }
    void expectKept()
    {
        for (const auto &[type, data] : kept) {
            EXPECT_EQ(target(type), data.bytes) << type.toStdString();
        }
    }

    AdoptedDesktop m_desktop{tests::sessionOnly()};
    OtherProgram m_before;
    OtherProgram m_application;
    OtherProgram m_intruder;
    FakeAccessibilityElements m_elements;
    FakeAccessibilityTrust m_trust;
    FakeWorkspace m_workspace;
    FakeKeyboardEvents m_keyboard;
    X11Connection m_connection;
    X11Pasteboard m_pasteboard{m_connection};
    QtClock m_clock;
    std::unique_ptr<TextSelectionService> m_service = std::make_unique<TextSelectionService>(
        TextSelectionService::Ports{m_elements, m_trust, m_workspace, m_keyboard, m_pasteboard, m_clock});
    std::optional<QString> m_text;

private:
    QCoro::Task<void> run()
    {
        try {
            m_text = co_await m_service->currentSelectedText();
        } catch (const AppError &error) {
            EXPECT_EQ(error, AppError(AppError::Kind::noSelectedText));
        }
        m_isOver = true;
    }

    bool m_isOver = false;
    QTimer m_ticks;
    QElapsedTimer m_sinceTick;
    qint64 m_longestPause = 0;
    int m_tickCount = 0;
};

} // namespace

TEST_F(X11CaptureTest, AnotherProgramThatCopiesDuringTheWaitIsTakenForTheApplication)
{
    m_before.copy(kept);
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            QTimer::singleShot(120ms, &m_intruder.connection, [this] { m_intruder.copy(textItem("of another")); });
        }
    });
    capture();
    EXPECT_EQ(m_text, u"of another"_s);
    expectKept();
}

TEST_F(X11CaptureTest, AnotherProgramThatCopiesRightAfterTheApplicationLosesOnlyItsOwnCopy)
{
    m_before.copy(kept);
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_application.copy(textItem("selected"));
            m_intruder.copy(textItem("of another"));
        }
    });
    capture();
    EXPECT_EQ(m_text, u"of another"_s);
    expectKept();
}

TEST_F(X11CaptureTest, AnotherProgramThatCopiesWhileTheContentsAreReadIsWhatIsPutBack)
{
    // Large, so that reading it takes pieces; what the other program copies is then the newest thing.
    PasteboardItem large = kept;
    large.front().data.bytes = QByteArray(8'000'000, 'x');
    m_before.copy(large);
    QTimer::singleShot(3ms, &m_intruder.connection, [this] { m_intruder.copy(kept); });
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_application.copy(textItem("selected"));
        }
    });
    capture();
    EXPECT_EQ(m_text, u"selected"_s);
    expectKept();
}

TEST_F(X11CaptureTest, AnApplicationThatCopiesAndEndsLosesNothing)
{
    m_before.copy(kept);
    auto application = std::make_unique<OtherProgram>();
    m_keyboard.setPostHandler([&application](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            application->copy(textItem("selected"));
            application.reset();
        }
    });
    capture();
    EXPECT_EQ(m_text, std::nullopt);
    expectKept();
}

TEST_F(X11CaptureTest, TheServicesEndDuringTheWaitPutsTheContentsBack)
{
    m_before.copy(kept);
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_application.copy(textItem("selected"));
            QTimer::singleShot(10ms, &m_connection, [this] { m_service.reset(); });
        }
    });
    capture();
    EXPECT_EQ(m_text, std::nullopt);
    expectKept();
}

TEST_F(X11CaptureTest, AServerThatIsBusyAtTheVeryFirstCaptureLosesNothing)
{
    m_application.copy(textItem("earlier")); // it knows the server; the service does not yet
    m_before.copy(kept);
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_application.copy(textItem("selected"));
        }
    });
    ASSERT_NE(m_connection.extension(xcb_xfixes_id), nullptr);
    {
        const tests::BusyServer busy;
        captureFromABusyServer();
        EXPECT_EQ(m_text, std::nullopt);
        EXPECT_THAT(m_keyboard.posted(), ::testing::IsEmpty()) << "what cannot be put back is not put at risk";
    }
    expectKept();
    capture();
    EXPECT_EQ(m_text, u"selected"_s);
    expectKept();
}

TEST_F(X11CaptureTest, AServerThatIsBusyForAWhileLosesNothing)
{
    m_before.copy(kept);
    m_keyboard.setPostHandler([this](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_application.copy(textItem("selected"));
        }
    });
    capture(); // everything is known to the server now
    m_before.copy(kept);
    const auto items = std::vector<PasteboardItem>{kept};
    tests::BusyServer busy;
    QElapsedTimer timer;
    timer.start();
    m_pasteboard.clear();
    EXPECT_TRUE(m_pasteboard.write(items)) << "not yet is not never";
    EXPECT_LT(timer.elapsed(), 1000);
    ::usleep(600'000); // longer than any of its questions waits for an answer, and nothing may ask the server
    busy.letGo();
    expectKept();
}

} // namespace orvesa
