// Terminals: what runs in them is never interrupted, and what is selected in them is captured all the same.

#include "desktop/apps/CaptureStage.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Terminal {
    const char *name;
    QString windowClass;
    QStringList arguments; ///< before the command
    QString strategy;
};

void PrintTo(const Terminal &terminal, std::ostream *stream)
{
    *stream << terminal.name;
}

} // namespace

class Terminals : public CaptureStage, public ::testing::WithParamInterface<Terminal> {
protected:
    void SetUp() override { setUp(); }

    /// A terminal that shows the two texts and in which cat runs; each line that it passes on becomes the window's
    /// title.
    void openTerminal()
    {
        const QString script = desktop->folders().write(
            u"home/run.sh"_s, "printf '\\033[2J\\033[H" + first.toUtf8() + "\\n" +
                                  QByteArray(other.toUtf8() + "\\n").repeated(otherLines) +
                                  "'\nprintf '\\033]0;process %s end\\007' $$\n"
                                  "cat | while IFS= read -r line; do printf '\\033]0;got %s\\007' \"$line\"; done\n");
        open(QString::fromLatin1(GetParam().name), GetParam().arguments + QStringList{u"-e"_s, u"sh "_s + script},
             GetParam().windowClass);
        static const QRegularExpression process(u"process (\\d+) end"_s);
        waitUntil([this] { return process.match(desktop->windows().title(window())).hasMatch(); },
                  u"the program in the terminal"_s);
        m_running = process.match(desktop->windows().title(window())).captured(1).toLongLong();
    }
    [[nodiscard]] bool isRunning() const { return QFile::exists(u"/proc/%1"_s.arg(m_running)); }
    /// Types a line and waits for it to come out of cat alone, with nothing before it.
    void typeLine()
    {
        desktop->keyboard().type(u"typed\n"_s);
        waitUntil([this] { return desktop->windows().title(window()).contains(u"got "_s); }, u"the typed line"_s);
        EXPECT_TRUE(desktop->windows().title(window()).contains(u"got typed"_s));
    }
    /// By a click elsewhere. The pointer stays there until the panel has gone: one that is over the panel keeps it.
    void sendPanelAway()
    {
        desktop->pointer().clickAt(QPoint(5, desktop->options().screenSize.height() - 5));
        waitUntil([this] { return !program->isPanelShown(); }, u"the panel to go"_s);
    }
    /// Selects the line at this height by clicking three times, and waits until the terminal shows it as selected:
    /// PRIMARY may hold the same text from an earlier time.
    void selectLine(int height, const QString &text)
    {
        const QRect line(desktop->windows().geometry(window()).topLeft() + QPoint(4, height - 4), QSize(80, 8));
        const QImage plain = desktop->windows().picture(line);
        QTimer look; // nobody announces what is drawn
        look.start(20ms);
        const auto isSelected = [&] {
            return isOtherwise(desktop->windows().picture(line), plain) &&
                   desktop->selections().text(Selection::primary).value_or(QString()).trimmed() == text;
        };
        waitUntil(
            [&] {
                processEventsFor(doubleClick); // clicks of an earlier attempt are none of this one's
                desktop->pointer().clickAt(line.center());
                desktop->pointer().click();
                desktop->pointer().click();
                return happensWithin(1s, isSelected);
            },
            u"the line to be selected"_s);
    }
    void selectFirstLine() { selectLine(firstHeight, first); }
    void selectOtherLine() { selectLine(otherHeight, other); }
    /// Takes the highlight away by a click where nothing is.
    void deselect()
    {
        sendPanelAway();
        desktop->windows().focus(window());
        desktop->pointer().clickAt(desktop->windows().geometry(window()).center());
        processEventsFor(doubleClick);
    }
    /// Captures, and shows that nothing was disturbed.
    Captured captureUndisturbed(const QString &column, std::chrono::milliseconds hold = 0ms)
    {
        const QByteArray before = clipboard();
        const xcb_window_t focus = desktop->windows().rawInputFocus();
        const auto primary = desktop->selections().text(Selection::primary);
        const xcb_window_t owner = desktop->selections().owner(Selection::primary);
        Captured captured = capture(hold);
        note(QString::fromLatin1(GetParam().name) + u", "_s + column, captured);
        EXPECT_EQ(clipboard(), before);
        EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
        EXPECT_EQ(desktop->selections().text(Selection::primary), primary);
        EXPECT_EQ(desktop->selections().owner(Selection::primary), owner);
        EXPECT_TRUE(isRunning());
        return captured;
    }
    /// Another window in which something else is selected.
    xcb_window_t selectElsewhere()
    {
        open(u"mousepad"_s, {u"--disable-server"_s, desktop->folders().write(u"home/older.txt"_s, "older text")},
             u"Mousepad"_s);
        select(u"Ctrl+a"_s, u"older text"_s);
        return window();
    }

    static constexpr int firstHeight = 10;
    static constexpr int otherHeight = 70; ///< of one of its lines, whatever the font
    static constexpr int otherLines = 6;
    const QString first = u"hello terminal"_s;
    const QString other = u"another line"_s;
    qint64 m_running = 0;

private:
    /// Whether most of the pixels are others.
    static bool isOtherwise(const QImage &picture, const QImage &before)
    {
        int others = 0;
        for (int y = 0; y < before.height(); ++y) {
            for (int x = 0; x < before.width(); ++x) {
                others += picture.pixel(x, y) != before.pixel(x, y) ? 1 : 0;
            }
        }
        return others > before.width() * before.height() / 2;
    }
};

INSTANTIATE_TEST_SUITE_P(Applications, Terminals,
                         ::testing::Values(Terminal{"xterm", u"XTerm"_s, {}, u"accessibility"_s},
                                           Terminal{"xfce4-terminal",
                                                    u"Xfce4-terminal"_s,
                                                    {u"--disable-server"_s, u"--hide-menubar"_s, u"--hide-toolbar"_s},
                                                    u"accessibility"_s}),
                         [](const auto &parameter) {
                             std::string name = parameter.param.name;
                             std::erase(name, '-');
                             return name;
                         });

TEST_P(Terminals, GivesWhatIsSelectedAndInterruptsNothing)
{
    copyPicture();
    openTerminal();
    selectFirstLine();
    for (const auto hold : {0ms, 300ms, 3000ms}) {
        const Captured captured = captureUndisturbed(u"held for %1 ms"_s.arg(hold.count()), hold);
        EXPECT_EQ(captured.text.trimmed(), first);
        EXPECT_EQ(captured.strategy, GetParam().strategy);
    }
    typeLine();
}

TEST_P(Terminals, FollowsWhatIsSelectedOneAfterAnother)
{
    copyPicture();
    openTerminal();
    selectFirstLine();
    EXPECT_EQ(captureUndisturbed(u"first"_s).text.trimmed(), first);

    // A click takes the highlight away, and with it the selection, although PRIMARY stays.
    deselect();
    EXPECT_EQ(captureUndisturbed(u"deselected"_s).message, nothingSelected);

    sendPanelAway();
    selectFirstLine();
    EXPECT_EQ(captureUndisturbed(u"selected a second time"_s).text.trimmed(), first);

    sendPanelAway();
    selectOtherLine();
    EXPECT_EQ(captureUndisturbed(u"something else selected"_s).text.trimmed(), other);
    deselect();
    EXPECT_EQ(captureUndisturbed(u"deselected again"_s).message, nothingSelected);
    typeLine();
}

TEST_P(Terminals, AnEarlierSelectionElsewhereNeverComesBack)
{
    copyPicture();
    const xcb_window_t editor = selectElsewhere();
    openTerminal();
    EXPECT_EQ(captureUndisturbed(u"an earlier selection elsewhere"_s).message, nothingSelected);
    sendPanelAway();
    desktop->windows().focus(window());
    selectFirstLine();
    EXPECT_EQ(captureUndisturbed(u"selected after it"_s).text.trimmed(), first);

    const xcb_window_t terminal = window();
    sendPanelAway();
    desktop->windows().focus(editor);
    const int changes = desktop->selections().changes(Selection::primary);
    desktop->keyboard().press(u"Ctrl+a"_s);
    waitUntil([&] { return desktop->selections().changes(Selection::primary) > changes; }, u"the selection"_s);
    desktop->windows().focus(terminal);
    EXPECT_EQ(captureUndisturbed(u"a later selection elsewhere"_s).message, nothingSelected);
}

TEST_P(Terminals, TwentyCapturesOfNothingInterruptNothing)
{
    copyPicture();
    openTerminal();
    const QByteArray before = clipboard();
    for (int time = 0; time < 20; ++time) {
        const Captured captured = capture();
        if (time == 0) {
            note(QString::fromLatin1(GetParam().name) + u", nothing selected"_s, captured);
        }
        ASSERT_EQ(captured.message, nothingSelected);
        ASSERT_TRUE(isRunning());
    }
    EXPECT_EQ(clipboard(), before);
    typeLine();
}

} // namespace orvesa::desktop
