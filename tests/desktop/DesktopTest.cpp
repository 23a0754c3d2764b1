#include "desktop/Desktop.h"

#include "desktop/BusClient.h"
#include "desktop/MarkedProcesses.h"
#include "desktop/Printing.h"
#include "desktop/TextEditor.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QSocketNotifier>

#include <algorithm>
#include <memory>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

DesktopOptions bare()
{
    DesktopOptions options;
    options.windowManager = WindowManager::none;
    options.sessionBus = SessionBus::none;
    options.accessibility = Accessibility::none;
    options.keyStore = KeyStore::absent;
    return options;
}

/// The end of a process that is not a child of this one, awaited through its descriptor.
class ProcessEnd final {
public:
    explicit ProcessEnd(pid_t pid)
        : m_descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))),
          m_notifier(m_descriptor, QSocketNotifier::Read)
    {
        EXPECT_GE(m_descriptor, 0) << "process " << pid << " had ended already";
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
            m_hasCome = true;
            m_notifier.setEnabled(false);
        });
    }
    ~ProcessEnd() { close(m_descriptor); }
    ProcessEnd(const ProcessEnd &) = delete;
    ProcessEnd &operator=(const ProcessEnd &) = delete;

    [[nodiscard]] bool hasCome() const { return m_hasCome; }

private:
    int m_descriptor;
    QSocketNotifier m_notifier;
    bool m_hasCome = false;
};

} // namespace

class DesktopUnder : public ::testing::TestWithParam<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(Managers, DesktopUnder, ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto &parameter) {
                             return parameter.param == WindowManager::openbox ? "openbox" : "xfwm4";
                         });

TEST_P(DesktopUnder, NamesItsWindowManager)
{
    DesktopOptions options;
    options.windowManager = GetParam();
    Desktop desktop(options);
    const std::vector<quint32> check =
        desktop.windows().cardinals(desktop.windows().root(), "_NET_SUPPORTING_WM_CHECK");
    ASSERT_EQ(check.size(), 1U);
    EXPECT_EQ(desktop.windows().title(check.front()).toLower(),
              GetParam() == WindowManager::openbox ? u"openbox"_s : u"xfwm4"_s);
}

TEST_P(DesktopUnder, TypesIntoAnEditorAndReadsItBack)
{
    DesktopOptions options;
    options.windowManager = GetParam();
    Desktop desktop(options);
    const TextEditor editor(desktop);
    const QString text = u"¿Dónde está la Biblioteca? #42 — 日本"_s;
    desktop.keyboard().type(text);
    EXPECT_EQ(desktop.accessibles().awaitReadable(
                  editor.content(), [&](const QString &now) { return now == text; }, u"the typed text"_s),
              text);
    desktop.keyboard().press(u"Ctrl+a"_s);
    desktop.selections().awaitText(Selection::primary, text);
    EXPECT_EQ(editor.content().selectedText(), text);
    EXPECT_EQ(desktop.windows().inputFocus(), editor.window());
    EXPECT_TRUE(desktop.keyboard().keysDown().empty());
}

TEST_P(DesktopUnder, GivesTheFocusToTheWindowAskedFor)
{
    DesktopOptions options;
    options.windowManager = GetParam();
    Desktop desktop(options);
    const TextEditor first(desktop);
    const TextEditor second(desktop);
    EXPECT_EQ(desktop.windows().active(), second.window());
    EXPECT_TRUE(desktop.windows().isAbove(second.window(), first.window()));
    desktop.windows().focus(first.window());
    EXPECT_EQ(desktop.windows().active(), first.window());
    EXPECT_EQ(desktop.windows().inputFocus(), first.window());
    waitUntil([&] { return desktop.windows().isAbove(first.window(), second.window()); }, u"the window to be raised"_s);
    const QRect inner = desktop.windows().geometry(first.window());
    const QRect outer = desktop.windows().frameGeometry(first.window());
    EXPECT_TRUE(outer.contains(inner));
    EXPECT_GT(inner.top(), outer.top()) << "a title bar";
}

TEST(Desktop, ObservesSelectionsWithoutTouchingThem)
{
    Desktop desktop;
    const TextEditor editor(desktop);
    EXPECT_EQ(desktop.selections().text(Selection::clipboard), std::nullopt);
    desktop.keyboard().type(u"copied"_s);
    desktop.keyboard().press(u"Ctrl+a"_s);
    desktop.keyboard().press(u"Ctrl+c"_s);
    desktop.selections().awaitText(Selection::clipboard, u"copied"_s);
    const int changes = desktop.selections().changes(Selection::clipboard);
    const xcb_window_t owner = desktop.selections().owner(Selection::clipboard);
    EXPECT_GT(changes, 0);
    EXPECT_EQ(desktop.selections().text(Selection::clipboard), u"copied"_s);
    EXPECT_EQ(desktop.selections().changes(Selection::clipboard), changes);
    EXPECT_EQ(desktop.selections().owner(Selection::clipboard), owner);
    desktop.keyboard().press(u"Ctrl+c"_s); // the same text again is a change all the same
    waitUntil([&] { return desktop.selections().changes(Selection::clipboard) > changes; }, u"a new owner"_s);
}

TEST(Desktop, ReadsASelectionThatComesInPieces)
{
    Desktop desktop;
    const TextEditor editor(desktop);
    const QString paragraph = u"0123456789abcdef"_s.repeated(64 * 1024); // 1 MB: more than one X request holds
    const QString path = desktop.folders().write(u"home/large.txt"_s, paragraph.toUtf8());
    Process &large = desktop.launch(u"mousepad"_s, {u"--disable-server"_s, path});
    desktop.windows().awaitActive(desktop.windows().awaitWindow({.pid = large.pid(), .title = u"large.txt"_s}));
    const Accessible content = desktop.accessibles().await(large.pid(), u"text"_s);
    waitUntil([&] { return content.has(AccessibleState::focused); }, u"the focus"_s);
    desktop.keyboard().press(u"Ctrl+a"_s);
    desktop.keyboard().press(u"Ctrl+c"_s);
    waitUntil([&] { return desktop.selections().changes(Selection::clipboard) > 0; }, u"the copy"_s);
    EXPECT_TRUE(desktop.selections().text(Selection::clipboard) == paragraph);
}

TEST(Desktop, MovesAndClicksThePointer)
{
    Desktop desktop;
    const TextEditor first(desktop);
    const TextEditor second(desktop);
    desktop.windows().moveResize(first.window(), QRect(20, 40, 400, 300));
    desktop.windows().moveResize(second.window(), QRect(600, 400, 400, 300));
    const auto isPlaced = [&] {
        return desktop.windows().geometry(first.window()).right() < 600 &&
               desktop.windows().geometry(second.window()).left() >= 590;
    };
    waitUntil(isPlaced, u"the windows to be moved"_s);
    desktop.pointer().clickAt(desktop.windows().geometry(first.window()).center());
    desktop.windows().awaitActive(first.window());
    EXPECT_EQ(desktop.pointer().position(), desktop.windows().geometry(first.window()).center());
}

TEST(Desktop, PerformsAccessibleActions)
{
    Desktop desktop;
    const TextEditor editor(desktop);
    desktop.keyboard().type(u"by the menu"_s);
    const auto entry = [&](const QString &label) {
        return desktop.accessibles().application(editor.process().pid()).find([&](const Accessible &accessible) {
            return accessible.role() == u"menu item"_s && accessible.name().trimmed() == label;
        });
    };
    const Accessible selectAll = desktop.accessibles().await([&] { return entry(u"Select All"_s); }, u"the menu"_s);
    EXPECT_TRUE(selectAll.doAction(u"click"_s));
    EXPECT_FALSE(selectAll.doAction(u"no such action"_s));
    desktop.selections().awaitText(Selection::primary, u"by the menu"_s);
}

TEST(Desktop, RunsSeveralSideBySide)
{
    Desktop one;
    Desktop other;
    EXPECT_NE(one.display(), other.display());
    EXPECT_NE(one.sessionBusAddress(), other.sessionBusAddress());
    EXPECT_NE(one.folders().top(), other.folders().top());
    const TextEditor editor(one);
    const TextEditor otherEditor(other);
    one.keyboard().type(u"one"_s);
    other.keyboard().type(u"other"_s);
    const auto reads = [](const QString &text) { return [text](const QString &now) { return now == text; }; };
    (void)one.accessibles().awaitReadable(editor.content(), reads(u"one"_s), u"the one's text"_s);
    (void)other.accessibles().awaitReadable(otherEditor.content(), reads(u"other"_s), u"the other's text"_s);
    one.keyStore().store(u"s"_s, u"a"_s, "only here");
    EXPECT_EQ(other.keyStore().count(u"s"_s), 0);
}

TEST(Desktop, HidesTheDevelopersSession)
{
    qputenv("WAYLAND_DISPLAY", "wayland-7");
    qputenv("LC_ALL", "ja_JP.UTF-8");
    qputenv("https_proxy", "http://127.0.0.1:1");
    Desktop desktop(bare());
    const ProcessResult result = desktop.runToEnd(u"env"_s, {}, {{u"ADDED"_s, u"yes"_s}, {u"LANG"_s, QString()}});
    EXPECT_EQ(result.exitCode, 0);
    const QList<QByteArray> lines = result.standardOutput.split('\n');
    const auto has = [&](const QByteArray &start) {
        return std::ranges::any_of(lines, [&](const QByteArray &line) { return line.startsWith(start); });
    };
    EXPECT_FALSE(has("WAYLAND_DISPLAY="));
    EXPECT_FALSE(has("LC_ALL="));
    EXPECT_FALSE(has("https_proxy="));
    EXPECT_FALSE(has("LANG="));
    EXPECT_TRUE(has("ADDED=yes"));
    EXPECT_TRUE(has("DISPLAY=" + desktop.display().toUtf8()));
    EXPECT_TRUE(has("HOME=" + desktop.folders().home().toUtf8()));
    struct stat status {};
    ASSERT_EQ(stat(desktop.folders().runtime().toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST(Desktop, KeepsItemsInAnUnlockedKeyStore)
{
    Desktop desktop;
    KeyStoreItems &items = desktop.keyStore();
    EXPECT_FALSE(items.isDefaultCollectionLocked());
    EXPECT_EQ(items.lookup(u"service"_s, u"one"_s), std::nullopt);
    items.store(u"service"_s, u"one"_s, "first");
    items.store(u"service"_s, u"one"_s, "replaced");
    items.store(u"service"_s, u"two"_s, "second");
    EXPECT_EQ(items.count(u"service"_s), 2);
    EXPECT_EQ(items.lookup(u"service"_s, u"one"_s), QByteArray("replaced"));
    items.remove(u"service"_s, u"one"_s);
    EXPECT_EQ(items.count(u"service"_s), 1);
    EXPECT_EQ(items.count(u"service"_s, u"one"_s), 0);
}

TEST(Desktop, HasALockedKeyStoreWhenAskedFor)
{
    DesktopOptions options;
    options.keyStore = KeyStore::locked;
    Desktop desktop(options);
    EXPECT_TRUE(desktop.keyStore().isDefaultCollectionLocked());
    EXPECT_THROW(desktop.keyStore().store(u"service"_s, u"one"_s, "secret"), DesktopError);
}

TEST(Desktop, HasNoKeyStoreWhenAskedFor)
{
    DesktopOptions options;
    options.keyStore = KeyStore::absent;
    Desktop desktop(options);
    EXPECT_THROW((void)desktop.keyStore(), DesktopError);
    BusClient bus(desktop.sessionBusAddress());
    EXPECT_THROW(bus.call(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s, u"org.freedesktop.DBus.Peer"_s,
                          u"Ping"_s),
                 DesktopError);
    EXPECT_FALSE(bus.hasOwner(u"org.freedesktop.secrets"_s));
}

TEST(Desktop, LosesItsKeyStoreWhenToldTo)
{
    Desktop desktop;
    desktop.stopKeyStore();
    EXPECT_FALSE(BusClient(desktop.sessionBusAddress()).hasOwner(u"org.freedesktop.secrets"_s));
}

TEST(Desktop, ShowsNotifierTraysThatComeAndGo)
{
    DesktopOptions options;
    options.tray = Tray::statusNotifier;
    Desktop desktop(options);
    BusClient bus(desktop.sessionBusAddress());
    EXPECT_TRUE(bus.hasOwner(u"org.kde.StatusNotifierWatcher"_s));
    EXPECT_TRUE(desktop.tray().items().empty());
    desktop.stopTray();
    bus.awaitNoOwner(u"org.kde.StatusNotifierWatcher"_s);
    EXPECT_THROW((void)desktop.tray(), DesktopError);
    desktop.startTray(Tray::statusNotifier);
    EXPECT_TRUE(bus.hasOwner(u"org.kde.StatusNotifierWatcher"_s));
}

TEST(Desktop, ShowsAnEmbeddingTray)
{
    DesktopOptions options;
    options.tray = Tray::embedding;
    Desktop desktop(options);
    EXPECT_FALSE(desktop.windows().mapped({.className = u"tint2"_s}).empty());
}

TEST(Desktop, TellsApplicationsItsScale)
{
    DesktopOptions options = bare();
    options.scale = 1.5;
    options.screenSize = QSize(800, 600);
    Desktop desktop(options);
    EXPECT_EQ(desktop.windows().property(desktop.windows().root(), "RESOURCE_MANAGER"), "Xft.dpi:\t144\n");
    EXPECT_EQ(desktop.windows().picture().size(), QSize(800, 600));
}

TEST(Desktop, TakesScreenshots)
{
    Desktop desktop;
    const TextEditor editor(desktop);
    const QString path = desktop.folders().top() + u"/shots/editor.png"_s;
    desktop.windows().screenshot(path, editor.window());
    EXPECT_EQ(QImage(path).size(), desktop.windows().frameGeometry(editor.window()).size());
    EXPECT_THROW(desktop.windows().screenshot(u"/proc/none/picture.png"_s), DesktopError);
}

TEST(Desktop, ReadsLinesAndEndsOfPrograms)
{
    Desktop desktop(bare());
    Process &echo = desktop.launch(u"cat"_s);
    echo.write("first\nsecond\n");
    EXPECT_EQ(echo.readLine(), "first");
    EXPECT_EQ(echo.readLine(), "second");
    EXPECT_THROW((void)echo.readLine(std::chrono::milliseconds(20)), DeadlineError);
    echo.closeInput();
    EXPECT_EQ(echo.awaitEnd().exitCode, 0);
    EXPECT_THROW((void)echo.readLine(), DesktopError);
    EXPECT_EQ(desktop.runToEnd(u"sh"_s, {u"-c"_s, u"cat; echo bad >&2; exit 3"_s}, {}, "in").exitCode, 3);
    EXPECT_TRUE(desktop.runToEnd(u"sh"_s, {u"-c"_s, u"kill -9 $$"_s}).crashed);
    EXPECT_THROW(desktop.launch(u"no-such-program"_s), DesktopError);
}

TEST(Desktop, EndsProgramsThatHaveFrozenOrRefuse)
{
    Desktop desktop(bare());
    Process &frozen = desktop.launch(u"cat"_s);
    frozen.freeze();
    frozen.terminate();
    EXPECT_FALSE(frozen.isRunning());
    Process &stubborn = desktop.launch(u"sh"_s, {u"-c"_s, u"trap '' TERM; echo ready; while :; do sleep 60; done"_s});
    EXPECT_EQ(stubborn.readLine(), "ready");
    stubborn.terminate(std::chrono::milliseconds(50));
    EXPECT_FALSE(stubborn.isRunning());
}

TEST(Desktop, LeavesNothingBehind)
{
    std::vector<qint64> started;
    QString folder;
    {
        DesktopOptions options;
        options.tray = Tray::statusNotifier; // has its store of settings activated by the bus
        Desktop desktop(options);
        Process &detached =
            desktop.launch(u"sh"_s, {u"-c"_s, u"setsid sh -c 'sleep 1000 & echo $!; exec sleep 1000' & wait"_s});
        const qint64 grandchild = detached.readLine().toLongLong();
        started = desktop.runningProcesses();
        EXPECT_TRUE(std::ranges::find(started, grandchild) != started.end());
        EXPECT_GE(started.size(), 11U);
        folder = desktop.folders().top();
    }
    for (const qint64 pid : started)
        EXPECT_EQ(parentOf(static_cast<pid_t>(pid)), 0) << "process " << pid << " still runs";
    EXPECT_FALSE(QFileInfo::exists(folder));
}

TEST(Desktop, LeavesNothingBehindWhenItsOwnerIsKilled)
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    Process owner(QStringLiteral(ORVESA_DESKTOP_OWNER), {}, environment, u"/"_s);
    const QString folder = QString::fromUtf8(owner.readLine());
    std::vector<std::unique_ptr<ProcessEnd>> ends;
    for (const QByteArray &pid : owner.readLine().split(' '))
        ends.push_back(std::make_unique<ProcessEnd>(pid.toInt()));
    EXPECT_GE(ends.size(), 8U);
    EXPECT_TRUE(QFileInfo::exists(folder));
    owner.kill();
    waitUntil([&] { return std::ranges::all_of(ends, [](const auto &end) { return end->hasCome(); }); },
              u"everything that the dead owner had started to end"_s);
    EXPECT_FALSE(QFileInfo::exists(folder)); // its guard, last to end, has removed it
}

} // namespace orvesa::desktop
