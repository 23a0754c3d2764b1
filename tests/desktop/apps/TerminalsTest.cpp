// Terminals: what runs in them is never interrupted, and what is selected in them is captured all the same.

#include "desktop/apps/CaptureStage.h"

#include <QFile>
#include <QRegularExpression>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Clicks that follow within this time belong together.
constexpr auto doubleClick = 500ms;

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

    /// A terminal that shows the text and in which cat runs; each line that it passes on becomes the window's title.
    void openTerminal(const QString &text)
    {
        const QString script = desktop->folders().write(
            u"home/run.sh"_s, "printf '\\033[2J\\033[H" + text.toUtf8() +
                                  "\\n'\nprintf '\\033]0;process %s end\\007' $$\n"
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
    /// Selects the line under the pointer by clicking three times.
    void selectFirstLine(const QString &text)
    {
        const QRect area = desktop->windows().geometry(window());
        waitUntil(
            [&] {
                desktop->pointer().clickAt(area.topLeft() + QPoint(30, m_firstLine));
                desktop->pointer().click();
                desktop->pointer().click();
                return happensWithin(500ms, [&] {
                    return desktop->selections().owner(Selection::primary) != 0 &&
                           desktop->selections().text(Selection::primary).value_or(QString()).trimmed() == text;
                });
            },
            u"the line to be selected"_s);
    }

    int m_firstLine = 10;
    qint64 m_running = 0;
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
    openTerminal(u"hello terminal"_s);
    selectFirstLine(u"hello terminal"_s);
    const QByteArray before = clipboard();
    const xcb_window_t focus = desktop->windows().rawInputFocus();
    for (const auto hold : {0ms, 300ms, 3000ms}) {
        const Captured captured = capture(hold);
        note(QString::fromLatin1(GetParam().name) + u", held for %1 ms"_s.arg(hold.count()), captured);
        EXPECT_EQ(captured.text.trimmed(), u"hello terminal"_s);
        EXPECT_EQ(captured.strategy, GetParam().strategy);
        EXPECT_EQ(clipboard(), before);
        EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
        EXPECT_TRUE(isRunning());
    }
    typeLine();

    // A click takes the highlight away, and with it the selection, although PRIMARY stays.
    sendPanelAway();
    desktop->windows().focus(window());
    const QRect area = desktop->windows().geometry(window());
    desktop->pointer().clickAt(area.center());
    processEventsFor(doubleClick);
    const Captured captured = capture();
    note(QString::fromLatin1(GetParam().name) + u", deselected"_s, captured);
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_TRUE(isRunning());
}

TEST_P(Terminals, TwentyCapturesOfNothingInterruptNothing)
{
    copyPicture();
    openTerminal(u"hello terminal"_s);
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
