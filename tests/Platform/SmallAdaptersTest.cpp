#include "Platform/linux/LocalePreferredLanguages.h"
#include "Platform/linux/MacKeyCodes.h"
#include "Platform/linux/WaylandSession.h"
#include "Platform/QtClock.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QProcessEnvironment>

#include <algorithm>
#include <array>
#include <set>

#include <linux/input-event-codes.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(MacKeyCodesTest, GoesThereAndBack)
{
    std::set<quint32> macCodes;
    std::set<quint32> evdevCodes;
    for (const MacKeyCodes::Pair &pair : MacKeyCodes::all()) {
        EXPECT_EQ(MacKeyCodes::toEvdev(pair.macCode), pair.evdevCode);
        EXPECT_EQ(MacKeyCodes::fromEvdev(pair.evdevCode), pair.macCode);
        EXPECT_TRUE(macCodes.insert(pair.macCode).second) << pair.macCode;
        EXPECT_TRUE(evdevCodes.insert(pair.evdevCode).second) << pair.evdevCode;
        EXPECT_LT(pair.macCode, 0x80U);
    }
    EXPECT_TRUE(std::ranges::is_sorted(MacKeyCodes::all(), {}, &MacKeyCodes::Pair::macCode));
}

TEST(MacKeyCodesTest, KnowsEveryKeyThatShortcutsUse)
{
    for (quint32 code = 0; code <= 0x33; ++code) { // letters, digits, punctuation, Return, Tab, Space, Delete
        EXPECT_TRUE(MacKeyCodes::toEvdev(code)) << code;
    }
    const std::vector<std::pair<quint32, quint32>> samples{
        {0x00, KEY_A},   {0x01, KEY_S},   {0x02, KEY_D},  {0x08, KEY_C},     {0x23, KEY_P},      {0x31, KEY_SPACE},
        {0x35, KEY_ESC}, {0x60, KEY_F5},  {0x7a, KEY_F1}, {0x6f, KEY_F12},   {0x5a, KEY_F20},    {0x52, KEY_KP0},
        {0x5c, KEY_KP9}, {0x5d, KEY_YEN}, {0x5e, KEY_RO}, {0x0a, KEY_102ND}, {0x75, KEY_DELETE}, {0x7e, KEY_UP},
    };
    for (const auto &[mac, evdev] : samples) {
        EXPECT_EQ(MacKeyCodes::toEvdev(mac), evdev) << mac;
    }
    EXPECT_EQ(MacKeyCodes::toEvdev(0x34), std::nullopt);
    EXPECT_EQ(MacKeyCodes::toEvdev(0xffffffff), std::nullopt);
    EXPECT_EQ(MacKeyCodes::fromEvdev(KEY_BRIGHTNESSUP), std::nullopt);
}

TEST(MacKeyCodesTest, KnowsEveryKeyOfTheThreeKindsOfBoards)
{
    // Row by row, as the boards have them: evdev numbers keys in that order.
    std::vector<quint32> keys;
    const auto add = [&keys](quint32 first, quint32 last) {
        for (quint32 key = first; key <= last; ++key) {
            keys.push_back(key);
        }
    };
    add(KEY_ESC, KEY_KPDOT);                                   // the whole main block, F1 to F10 and the keypad
    add(KEY_102ND, KEY_F12);                                   // ISO: the key beside the left Shift
    keys.insert(keys.end(), {KEY_RO, KEY_YEN, KEY_KPJPCOMMA}); // JIS
    keys.insert(keys.end(), {KEY_MUHENKAN, KEY_HENKAN});       // JIS: beside the space bar
    add(KEY_KPENTER, KEY_RIGHTCTRL);
    keys.insert(keys.end(), {KEY_KPSLASH, KEY_RIGHTALT, KEY_LEFTMETA, KEY_RIGHTMETA, KEY_COMPOSE});
    add(KEY_HOME, KEY_DELETE);
    // Keys that Apple's boards lack: no macOS code stands for their place.
    const std::set<quint32> strangers{KEY_SCROLLLOCK, KEY_KPJPCOMMA};
    for (const quint32 key : keys) {
        EXPECT_EQ(MacKeyCodes::fromEvdev(key).has_value(), !strangers.contains(key)) << key;
    }
}

namespace {

/// What a process with this environment finds.
QByteArrayList languages(const QString &language, const QString &languageList = {})
{
    QProcessEnvironment environment;
    environment.insert(u"LANG"_s, language);
    if (!languageList.isEmpty()) {
        environment.insert(u"LANGUAGE"_s, languageList);
    }
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.start(QStringLiteral(ORVESA_LANGUAGES_PROBE), QStringList());
    EXPECT_TRUE(probe.waitForFinished(10000));
    return probe.readAllStandardOutput().trimmed().split('\n');
}

QCoro::Task<void> note(QtClock &clock, std::chrono::milliseconds duration, std::stop_token stop, bool &isOver)
{
    co_await clock.sleep(duration, stop);
    isOver = true;
}

/// Milliseconds until the sleep was over.
qint64 timeUntil(const bool &isOver)
{
    QElapsedTimer timer;
    timer.start();
    while (!isOver && timer.elapsed() < 5000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return timer.elapsed();
}

} // namespace

TEST(LocalePreferredLanguagesTest, FollowsTheEnvironment)
{
    EXPECT_EQ(languages(u"ja_JP.UTF-8"_s).first(), "ja-JP");
    EXPECT_EQ(languages(u"en_US.UTF-8"_s).first(), "en-US");
    const QByteArrayList taiwan = languages(u"zh_TW.UTF-8"_s);
    EXPECT_TRUE(taiwan.first() == "zh-TW" || taiwan.first() == "zh-Hant-TW") << taiwan.join(' ').constData();
    const QByteArrayList list = languages(u"en_US.UTF-8"_s, u"ja:zh_TW:en"_s);
    EXPECT_TRUE(list.first().startsWith("ja")) << list.join(' ').constData();
    EXPECT_TRUE(std::ranges::any_of(list, [](const QByteArray &tag) { return tag.startsWith("zh"); }))
        << list.join(' ').constData();
}

TEST(WaylandSessionTest, HasQtUseTheXServerInsideIt)
{
    const auto platform = [] { return qgetenv("QT_QPA_PLATFORM"); };
    const std::array variables{"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"};
    std::array<QByteArray, variables.size()> before;
    std::ranges::transform(variables, before.begin(), [](const char *name) { return qgetenv(name); });
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("XDG_SESSION_TYPE");
    qputenv("DISPLAY", QByteArrayLiteral(":9"));
    {
        const WaylandSession::PreferredPlatform preferred;
        EXPECT_EQ(platform(), QByteArray()) << "X11 is found by itself";
    }
    qputenv("WAYLAND_DISPLAY", QByteArrayLiteral("wayland-9"));
    {
        const WaylandSession::PreferredPlatform preferred;
        EXPECT_EQ(platform(), QByteArray("xcb"));
    }
    EXPECT_EQ(platform(), QByteArray()) << "programs started later choose for themselves";
    qputenv("XDG_SESSION_TYPE", QByteArrayLiteral("x11"));
    EXPECT_FALSE(WaylandSession::isRunning()) << "the variable is an earlier session's";
    qputenv("XDG_SESSION_TYPE", QByteArrayLiteral("wayland"));
    EXPECT_TRUE(WaylandSession::isRunning());
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    {
        const WaylandSession::PreferredPlatform preferred;
        EXPECT_EQ(platform(), QByteArray("offscreen"));
    }
    EXPECT_EQ(platform(), QByteArray("offscreen"));
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("DISPLAY");
    {
        const WaylandSession::PreferredPlatform preferred;
        EXPECT_EQ(platform(), QByteArray()) << "there is no X server";
    }
    for (std::size_t index = 0; index < variables.size(); ++index) {
        if (before[index].isEmpty()) {
            qunsetenv(variables[index]);
        } else {
            qputenv(variables[index], before[index]);
        }
    }
}

TEST(QtClockTest, SleepsForTheDuration)
{
    QtClock clock;
    bool isOver = false;
    note(clock, 60ms, {}, isOver);
    EXPECT_FALSE(isOver);
    EXPECT_GE(timeUntil(isOver), 55);
}

TEST(QtClockTest, WakesWhenStopped)
{
    QtClock clock;
    std::stop_source source;
    bool isOver = false;
    note(clock, 60s, source.get_token(), isOver);
    source.request_stop();
    EXPECT_FALSE(isOver) << "not inside the call that asks";
    EXPECT_LT(timeUntil(isOver), 1000);
    EXPECT_TRUE(isOver);
    bool isOverAtOnce = false;
    note(clock, 60s, source.get_token(), isOverAtOnce);
    EXPECT_TRUE(isOverAtOnce);
}

} // namespace orvesa
