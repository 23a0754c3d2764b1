// Terminals: what runs in them is never interrupted, and what is selected in them is captured all the same.

#include "desktop/apps/CaptureStage.h"

#include <QFile>

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

    /// A terminal that shows the text and in which a program runs that writes what is typed into a file.
    void openTerminal(const QString &text)
    {
        const QString script = desktop->folders().write(
            u"home/run.sh"_s, "printf '\\033[2J\\033[H" + text.toUtf8() + "\\n'\necho $$ > '" + pidPath().toUtf8() +
                                  "'\nexec cat > '" + typedPath().toUtf8() + "'\n");
        open(QString::fromLatin1(GetParam().name), GetParam().arguments + QStringList{u"-e"_s, u"sh "_s + script},
             GetParam().windowClass);
        waitUntil([this] { return runningProgram() != 0; }, u"the program in the terminal"_s);
    }
    [[nodiscard]] QString pidPath() const { return desktop->folders().top() + u"/home/pid"_s; }
    [[nodiscard]] QString typedPath() const { return desktop->folders().top() + u"/home/typed"_s; }
    [[nodiscard]] qint64 runningProgram() const
    {
        QFile file(pidPath());
        if (!file.open(QIODevice::ReadOnly)) {
            return 0;
        }
        const qint64 pid = file.readAll().trimmed().toLongLong();
        return pid != 0 && QFile::exists(u"/proc/%1"_s.arg(pid)) ? pid : 0;
    }
    [[nodiscard]] QByteArray typed() const
    {
        QFile file(typedPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
    const qint64 running = runningProgram();
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
        EXPECT_EQ(runningProgram(), running);
    }
    desktop->keyboard().type(u"typed\n"_s);
    waitUntil([this] { return typed() == "typed\n"; }, u"the typed line"_s);
}

TEST_P(Terminals, TwentyCapturesOfNothingInterruptNothing)
{
    copyPicture();
    openTerminal(u"hello terminal"_s);
    const qint64 running = runningProgram();
    const QByteArray before = clipboard();
    for (int time = 0; time < 20; ++time) {
        const Captured captured = capture();
        if (time == 0) {
            note(QString::fromLatin1(GetParam().name) + u", nothing selected"_s, captured);
        }
        ASSERT_EQ(captured.message, nothingSelected);
        ASSERT_EQ(runningProgram(), running);
    }
    EXPECT_EQ(clipboard(), before);
    desktop->keyboard().type(u"typed\n"_s);
    waitUntil([this] { return typed() == "typed\n"; }, u"the typed line, and nothing before it"_s);
}

} // namespace orvesa::desktop
