#include "Platform/linux/ATSPIAccelerator.h"
#include "Platform/linux/ATSPIMenus.h"
#include "Platform/linux/TerminalPrograms.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using TerminalPrograms::CopyKeys;

TEST(ATSPIAcceleratorTest, ReadsWhatToolkitsWrite)
{
    const auto read = &ATSPIAccelerator::fromKeyBinding;
    EXPECT_EQ(read(u"c;<Alt>e:c;<Primary>c"_s), (ATSPIAccelerator{u"c"_s, 0}));
    EXPECT_EQ(read(u"c;<Alt>e:c;<Control>C"_s), (ATSPIAccelerator{u"C"_s, 0}));
    EXPECT_EQ(read(u"c;<Alt>e:c;<Primary><Shift>c"_s), (ATSPIAccelerator{u"c"_s, 1}));
    EXPECT_EQ(read(u";;<Alt><Super>c"_s), (ATSPIAccelerator{u"c"_s, 14}));
    EXPECT_EQ(read(u"Ctrl+C"_s), (ATSPIAccelerator{u"C"_s, 0}));
    EXPECT_EQ(read(u"Ctrl+Shift+C"_s), (ATSPIAccelerator{u"C"_s, 1}));
    EXPECT_EQ(read(u"Ctrl+Alt+Meta+C"_s), (ATSPIAccelerator{u"C"_s, 6}));
    EXPECT_EQ(read(u"F5"_s), (ATSPIAccelerator{u"F5"_s, 8}));
    EXPECT_EQ(read(u"Ctrl++"_s), (ATSPIAccelerator{u"+"_s, 0}));
}

TEST(ATSPIAcceleratorTest, ReadsNothingFromAnythingElse)
{
    for (const QString &binding :
         {u""_s, u";;"_s, u"c;<Alt>e:c;"_s, u"<Primary"_s, u"<Unknown>c"_s, u"Hyper space+x"_s, u"<Primary>"_s}) {
        EXPECT_EQ(ATSPIAccelerator::fromKeyBinding(binding), std::nullopt) << binding.toStdString();
    }
}

TEST(ATSPIMenuItemTest, KnowsTheNamesOfTheCopyCommand)
{
    for (const QString &name : {u"copy"_s, u"edit-copy"_s, u"edit_copy"_s, u"actionCopy"_s, u"win.edit-copy"_s,
                                u"clipboard.copy"_s, u"actionEdit_Copy"_s}) {
        EXPECT_TRUE((ATSPIMenuItem{.element = {}, .identifier = name}.isNamedCopy())) << name.toStdString();
    }
    for (const QString &name : {u""_s, u"copy-link"_s, u"cut"_s, u"copyright"_s, u"edit_copy_path"_s}) {
        EXPECT_FALSE((ATSPIMenuItem{.element = {}, .identifier = name}.isNamedCopy())) << name.toStdString();
    }
}

TEST(TerminalProgramsTest, KnowsTerminalsByTheirWindows)
{
    EXPECT_EQ(TerminalPrograms::copyKeys("xterm", "XTerm"), CopyKeys::none);
    EXPECT_EQ(TerminalPrograms::copyKeys("x-terminal-emulator", "UXTerm"), CopyKeys::none);
    EXPECT_EQ(TerminalPrograms::copyKeys("urxvt", "URxvt"), CopyKeys::none);
    EXPECT_EQ(TerminalPrograms::copyKeys("xfce4-terminal", "Xfce4-terminal"), CopyKeys::controlShift);
    EXPECT_EQ(TerminalPrograms::copyKeys("", "org.kde.konsole"), CopyKeys::controlShift);
    EXPECT_EQ(TerminalPrograms::copyKeys("gnome-terminal-server", "Gnome-terminal"), CopyKeys::controlShift);
    EXPECT_EQ(TerminalPrograms::copyKeys("kate", "kate"), std::nullopt);
    EXPECT_EQ(TerminalPrograms::copyKeys("", ""), std::nullopt);
}

TEST(TerminalProgramsTest, FindsWhoHoldsATerminal)
{
    EXPECT_FALSE(TerminalPrograms::holdsTerminal(getpid()));
    const int terminal = ::open("/dev/ptmx", O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    EXPECT_TRUE(TerminalPrograms::holdsTerminal(getpid()));
    EXPECT_TRUE(TerminalPrograms::holdsTerminal(getppid())) << "through what it has started";
    ::close(terminal);
    EXPECT_FALSE(TerminalPrograms::holdsTerminal(getpid()));
    constexpr qint64 nobody = 0x7fffffff;
    EXPECT_TRUE(TerminalPrograms::holdsTerminal(nobody)) << "nothing is known of it";
}

} // namespace orvesa
