#include "desktop/SettingsWindow.h"

#include <QElapsedTimer>

#include <utility>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

const QString windowTitle = u"Orvesa Translate Settings"_s;
constexpr int mostStrokes = 60;
constexpr int mostTurns = 40;
constexpr std::chrono::milliseconds lookInterval{20};

bool isShowing(const Accessible &element)
{
    return element.has(AccessibleState::showing);
}

} // namespace

SettingsWindow::SettingsWindow(Desktop &desktop, TranslateProgram &program) : m_desktop(desktop), m_program(program)
{
    m_look.start(lookInterval);
}

void SettingsWindow::open()
{
    const ProcessResult second = m_program.run({});
    if (second.exitCode != 0)
        throw DesktopError(u"the settings window could not be asked for"_s);
    m_window = m_desktop.windows().awaitWindow({.pid = m_program.process().pid(), .title = windowTitle});
    m_desktop.windows().awaitActive(m_window);
    // Until it has read where the window manager has put it, places on the accessibility bus are off by the frame.
    const auto knowsItsPlace = [this] {
        const QRect place = root().extents();
        return !place.isEmpty() && place == m_desktop.windows().geometry(m_window);
    };
    waitUntil(knowsItsPlace, u"the settings window to know its place"_s);
}

void SettingsWindow::close()
{
    m_desktop.windows().close(m_window);
    m_desktop.windows().awaitNoWindow({.pid = m_program.process().pid(), .title = windowTitle});
}

Accessible SettingsWindow::root() const
{
    for (const Accessible &window : m_desktop.accessibles().windows(m_program.process().pid(), windowTitle))
        if (isShowing(window))
            return window;
    return {};
}

Accessible SettingsWindow::find(const QString &name, const QString &role, const QString &description) const
{
    return root().find([&](const Accessible &element) {
        return element.name() == name && (role.isEmpty() || element.role() == role) &&
               (description.isEmpty() || element.description() == description) && isShowing(element);
    });
}

Accessible SettingsWindow::await(const QString &name, const QString &role, const QString &description)
{
    Accessible found;
    const auto look = [&] {
        found = find(name, role, description);
        return !found.isNull();
    };
    if (!happensWithin(usualDeadline, look))
        throw DeadlineError(u"no %1 '%2' (%3); the window reads: %4"_s.arg(role, name, description, root().dump()));
    return found;
}

void SettingsWindow::awaitText(const QString &text)
{
    static_cast<void>(await(text));
}

void SettingsWindow::awaitNoText(const QString &text)
{
    waitUntil([&] { return !shows(text); }, u"'%1' to go"_s.arg(text));
}

QRect SettingsWindow::awaitStill(const Accessible &element) const
{
    QRect place;
    QElapsedTimer unchanged; // two looks right after each other can come before the same move
    const auto stays = [&] {
        const QRect before = std::exchange(place, element.extents());
        if (!unchanged.isValid() || before != place)
            unchanged.start();
        return !place.isEmpty() && unchanged.elapsed() >= lookInterval.count();
    };
    waitUntil(stays, u"'%1' to stay where it is"_s.arg(element.name()));
    return place;
}

void SettingsWindow::click(const Accessible &element)
{
    // What was just shown may still move to its place.
    QRect place = awaitStill(element);
    const QRect view = m_desktop.windows().geometry(m_window);
    if (!view.contains(place))
        m_desktop.pointer().moveTo({view.right() - 12, view.center().y()});
    for (int turn = 0; !view.contains(place); ++turn) {
        if (turn == mostTurns)
            throw DesktopError(u"'%1' cannot be scrolled into view"_s.arg(element.name()));
        m_desktop.pointer().click(place.top() < view.top() ? MouseButton::wheelUp : MouseButton::wheelDown);
        waitUntil([&] { return element.extents() != place; }, u"the page to scroll"_s);
        place = awaitStill(element);
    }
    m_desktop.pointer().clickAt(place.center());
    // The window manager looks at a press before the window gets it, and not at keys, which can overtake it.
    if (element.has(AccessibleState::editable))
        waitUntil([&] { return element.has(AccessibleState::focused); },
                  u"'%1' to get the keyboard"_s.arg(element.name()));
}

void SettingsWindow::click(const QString &name, const QString &role, const QString &description)
{
    click(await(name, role, description));
}

void SettingsWindow::chooseWithKeys(const Accessible &element, const QStringList &keys)
{
    const WindowMatch program{.pid = m_program.process().pid()};
    const std::size_t before = m_desktop.windows().mapped(program).size();
    click(element);
    waitUntil([&] { return m_desktop.windows().mapped(program).size() > before; },
              u"what '%1' opens"_s.arg(element.name()));
    for (const QString &key : keys)
        m_desktop.keyboard().press(key);
    waitUntil([&] { return m_desktop.windows().mapped(program).size() <= before; },
              u"what '%1' opened to close"_s.arg(element.name()));
}

void SettingsWindow::choose(const QString &section, const QString &subtitle)
{
    click(section, u"radio button"_s);
    awaitText(subtitle);
}

Accessible SettingsWindow::focused() const
{
    return root().find([](const Accessible &element) { return element.has(AccessibleState::focused); });
}

void SettingsWindow::pressUntilFocused(const QString &key, const QString &name, const QString &description)
{
    QStringList passed;
    for (int stroke = 0; stroke < mostStrokes; ++stroke) {
        const Accessible before = focused();
        m_desktop.keyboard().press(key);
        Accessible now;
        waitUntil(
            [&] {
                now = focused();
                return !now.isNull() && !(now == before);
            },
            u"the keyboard to move on from '%1'"_s.arg(before.name()));
        passed.append(now.name());
        if (now.name() == name && (description.isEmpty() || now.description() == description))
            return;
    }
    throw DesktopError(u"'%1' never got the keyboard, but %2"_s.arg(name, passed.join(u" | "_s)));
}

} // namespace orvesa::desktop
