#include "desktop/ShortcutFixture.h"

#include <QTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The keys by their places; on an American board these are the left Alt, A, S and D.
constexpr xcb_keycode_t placeOfAlt = 64;
constexpr xcb_keycode_t placeOfA = 38;
constexpr xcb_keycode_t placeOfS = 39;
constexpr xcb_keycode_t placeOfD = 40;
constexpr auto fromKeyToKey = 10ms;

} // namespace

void ShortcutFixture::SetUp()
{
    setUp();
    service.setResponder([](const service::ServiceRequest &) { return answer(u"answered"_s); });
    program->setPreference(u"settings.polishMode"_s, u"concise"_s);
    program->start();
}

Process &ShortcutFixture::open(const QString &name, const QStringList &arguments, const QString &windowClass,
                               std::chrono::milliseconds deadline)
{
    Process &process = desktop->launch(name, arguments);
    front = desktop->windows().awaitWindow({.className = windowClass}, deadline);
    desktop->windows().awaitActive(front, deadline);
    return process;
}

void ShortcutFixture::pressWithAlt(xcb_keycode_t place)
{
    const auto turn = [this](xcb_keycode_t code, bool down) {
        desktop->keyboard().turnCode(code, down ? Keyboard::Turn::down : Keyboard::Turn::up);
        processEventsFor(fromKeyToKey);
    };
    turn(placeOfAlt, true);
    turn(place, true);
    turn(place, false);
    turn(placeOfAlt, false);
}

void ShortcutFixture::expectAllShortcuts()
{
    struct Locks {
        const char *name;
        quint8 modifiers;
    };
    for (const auto &layout : {u"us"_s, u"de"_s, u"fr"_s, u"jp"_s}) {
        ASSERT_EQ(desktop->runToEnd(u"setxkbmap"_s, {layout}).exitCode, 0);
        for (const Locks &locks :
             {Locks{"no lock", 0}, Locks{"Caps Lock", XCB_MOD_MASK_LOCK}, Locks{"Num Lock", XCB_MOD_MASK_2},
              Locks{"both locks", XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}}) {
            desktop->keyboard().lock(locks.modifiers);
            const std::string where = layout.toStdString() + " with " + locks.name;
            expectRequest(placeOfD, u"Translate the following text into English."_s, where);
            expectRequest(placeOfS, u"Please rewrite the following text to be clearer"_s, where);
            expectScreenCapture(where);
        }
    }
    desktop->keyboard().lock(0);
}

void ShortcutFixture::expectRequest(xcb_keycode_t place, const QString &part, const std::string &where)
{
    const std::size_t before = service.requests().size();
    pressWithAlt(place);
    waitUntil([&] { return service.requests().size() > before; }, u"the request on "_s + QString::fromStdString(where));
    EXPECT_EQ(service.requests().size(), before + 1) << where;
    EXPECT_TRUE(service.requests().back().body.contains(part.toUtf8()))
        << where << ": " << service.requests().back().body.constData();
    EXPECT_EQ(desktop->windows().active(), front) << where;
    EXPECT_TRUE(desktop->keyboard().keysDown().empty()) << where;
}

void ShortcutFixture::expectScreenCapture(const std::string &where)
{
    pressWithAlt(placeOfA);
    {
        QTimer look; // the server tells nobody of another program's grab
        look.start(5ms);
        const xcb_window_t overlay = desktop->windows().awaitWindow({.className = u"orvesa-screencapture"_s});
        waitUntil([&] { return desktop->windows().title(overlay) == u"Screen capture"_s; },
                  u"the overlay to have pointer and keyboard"_s);
    }
    desktop->keyboard().press(u"Escape"_s);
    desktop->windows().awaitNoWindow({.className = u"orvesa-screencapture"_s});
    desktop->windows().awaitActive(front);
    EXPECT_TRUE(desktop->keyboard().keysDown().empty()) << where;
}

void ShortcutFixture::expectTypingToGoOn(int presses, const std::function<QString()> &read)
{
    QString typed;
    for (int round = 0; round < presses; ++round) {
        // With Alt up first there is no release of another key between its press and its own.
        if (round % 2 == 0) {
            desktop->keyboard().rollByHand(u"Alt+d"_s);
        } else {
            desktop->keyboard().pressByHand(u"Alt+d"_s);
        }
        const QString letter(QChar(u'a' + round % 26));
        desktop->keyboard().type(letter);
        typed += letter;
        ASSERT_TRUE(happensWithin(usualDeadline, [&] { return read() == typed; }))
            << "after press " << round + 1 << ": " << read().toStdString();
    }
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

} // namespace orvesa::desktop
