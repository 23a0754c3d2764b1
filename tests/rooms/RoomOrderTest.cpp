#include "rooms/MadeUpTree.h"
#include "rooms/RoomOrder.h"

#include <gtest/gtest.h>

#include <array>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

std::string join(const QStringList &findings)
{
    return findings.join(u'\n').toStdString();
}

TEST(RoomOrder, knowsTheRoomOfEveryPath)
{
    EXPECT_EQ(roomOf(u"Platform/ClockPort.h"_s), Room::ports);
    EXPECT_EQ(roomOf(u"Platform/linux/QtClock.cpp"_s), Room::linuxAdapters);
    EXPECT_EQ(roomOf(u"Platform/linux/WaylandSession.h"_s), Room::linuxSession);
    EXPECT_EQ(roomOf(u"Platform/linux/WaylandPointer.h"_s), Room::linuxAdapters);
    EXPECT_EQ(roomOf(u"Platform/macos/Pasteboard.mm"_s), Room::macosAdapters);
    EXPECT_EQ(roomOf(u"Core/Localization.h"_s), Room::ground);
    EXPECT_EQ(roomOf(u"Core/LocalizationJapanese.cpp"_s), Room::ground);
    EXPECT_EQ(roomOf(u"Core/KeychainService.h"_s), Room::ground);
    EXPECT_EQ(roomOf(u"Core/RawValue.h"_s), Room::ground);
    EXPECT_EQ(roomOf(u"Core/SettingsStore.h"_s), Room::core);
    EXPECT_EQ(roomOf(u"Core/RawValueTable.h"_s), Room::core);
    EXPECT_EQ(roomOf(u"Models/AITask.h"_s), Room::models);
    EXPECT_EQ(roomOf(u"AI/AIProvider.h"_s), Room::ai);
    EXPECT_EQ(roomOf(u"UI/Style.h"_s), Room::ui);
    EXPECT_EQ(roomOf(u"App/AppDelegate.cpp"_s), Room::app);
    EXPECT_EQ(roomOf(u"App/Settings/GeneralPage.h"_s), Room::app);
    EXPECT_EQ(roomOf(u"App/CompositionLinux.cpp"_s), Room::composition);
    EXPECT_EQ(roomOf(u"Platform/windows/Clock.h"_s), std::nullopt);
    EXPECT_EQ(roomOf(u"Attic/Old.h"_s), std::nullopt);
    EXPECT_EQ(roomOf(u"main.cpp"_s), std::nullopt);
}

TEST(RoomOrder, letsArrowsPointDownOnly)
{
    const std::array order{Room::ports, Room::ground, Room::models, Room::ai, Room::core, Room::ui, Room::app};
    for (std::size_t from = 0; from < order.size(); ++from) {
        for (std::size_t to = 0; to < order.size(); ++to) {
            EXPECT_EQ(mayInclude(order.at(from), order.at(to)), from >= to)
                << roomName(order.at(from)).toStdString() << " to " << roomName(order.at(to)).toStdString();
        }
    }
}

TEST(RoomOrder, letsOnlyTheCompositionNameADesktop)
{
    for (const Room desktop : {Room::linuxAdapters, Room::macosAdapters}) {
        EXPECT_TRUE(mayInclude(desktop, Room::ports));
        EXPECT_FALSE(mayInclude(desktop, Room::ground));
        EXPECT_FALSE(mayInclude(desktop, Room::models));
        EXPECT_TRUE(mayInclude(Room::composition, desktop));
        EXPECT_FALSE(mayInclude(Room::app, desktop));
        EXPECT_FALSE(mayInclude(Room::core, desktop));
        EXPECT_FALSE(mayInclude(Room::ports, desktop));
    }
    EXPECT_FALSE(mayInclude(Room::linuxAdapters, Room::macosAdapters));
    EXPECT_FALSE(mayInclude(Room::tools, Room::ports));
    EXPECT_FALSE(mayInclude(Room::composition, Room::tools));
    EXPECT_FALSE(mayInclude(Room::ui, Room::composition));
}

TEST(RoomOrder, letsAdaptersAndToolsAgreeOnTheSession)
{
    for (const Room room : {Room::linuxAdapters, Room::composition, Room::tools}) {
        EXPECT_TRUE(mayInclude(room, Room::linuxSession)) << roomName(room).toStdString();
    }
    for (const Room room : {Room::ports, Room::core, Room::app, Room::macosAdapters}) {
        EXPECT_FALSE(mayInclude(room, Room::linuxSession)) << roomName(room).toStdString();
    }
    for (const Room room : {Room::ports, Room::linuxAdapters, Room::tools}) {
        EXPECT_FALSE(mayInclude(Room::linuxSession, room)) << roomName(room).toStdString();
    }
}

TEST(RoomOrder, passesATreeInOrder)
{
    const MadeUpTree tree({
        {"Platform/ClockPort.h", "#include <QString>\n"},
        {"Core/RawValue.h", "#include <array>\n"},
        {"Models/Text.h", "#include \"Core/RawValue.h\"\n"},
        {"Core/SettingsStore.h", "#include \"Models/Text.h\"\n#include \"Platform/ClockPort.h\"\n"},
        {"Core/SettingsStore.cpp", "#include \"Core/SettingsStore.h\"\n#include \"Core/SettingsStore.moc\"\n"},
        {"App/Identity.h.in", "#pragma once\n"},
        {"App/main.cpp", "#include \"App/Identity.h\"\n"},
        {"Platform/linux/QtClock.h", "#include \"Platform/ClockPort.h\"\n"},
        {"App/CompositionLinux.cpp", "#include \"Platform/linux/QtClock.h\"\n#include \"Core/SettingsStore.h\"\n"},
    });
    EXPECT_EQ(join(wrongArrows(tree.read())), "");
    EXPECT_EQ(join(circles(tree.read())), "");
}

TEST(RoomOrder, findsAnArrowThatPointsUp)
{
    const MadeUpTree tree({
        {"Core/SettingsStore.h", ""},
        {"Models/Text.h", "#include <array>\n  #  include \"Core/SettingsStore.h\"\n"},
    });
    EXPECT_EQ(join(wrongArrows(tree.read())),
              "Models/Text.h: includes Core/SettingsStore.h, an arrow from models to core");
}

TEST(RoomOrder, findsAnArrowHiddenInAngleBracketsOrARelativePath)
{
    const MadeUpTree tree({
        {"UI/Style.h", ""},
        {"AI/Client.cpp", "#include <UI/Style.h>\n"},
        {"AI/Other.cpp", "#include \"../UI/Style.h\"\n"},
    });
    EXPECT_EQ(join(wrongArrows(tree.read())), "AI/Client.cpp: includes UI/Style.h, an arrow from ai to ui\n"
                                              "AI/Other.cpp: includes ../UI/Style.h by a relative path");
}

TEST(RoomOrder, findsAnAdapterThatLooksAboveThePorts)
{
    const MadeUpTree tree({
        {"Core/Localization.h", ""},
        {"Platform/linux/Prompt.cpp", "#include \"Core/Localization.h\"\n"},
        {"App/AppDelegate.cpp", "#include \"Platform/linux/Prompt.h\"\n"},
        {"Platform/linux/Prompt.h", ""},
    });
    EXPECT_EQ(join(wrongArrows(tree.read())),
              "App/AppDelegate.cpp: includes Platform/linux/Prompt.h, an arrow from app to linux\n"
              "Platform/linux/Prompt.cpp: includes Core/Localization.h, an arrow from linux to ground");
}

TEST(RoomOrder, findsAFileThatIsNotThereOrInNoRoom)
{
    const MadeUpTree tree({{"Attic/Old.h", ""}, {"UI/Panel.cpp", "#include \"UI/Gone.h\"\n"}});
    EXPECT_EQ(join(wrongArrows(tree.read())),
              "Attic/Old.h: is in no room\nUI/Panel.cpp: includes UI/Gone.h, which does not exist");
}

TEST(RoomOrder, findsACircleOfFilesInOneRoom)
{
    const MadeUpTree tree({
        {"UI/First.h", "#include \"UI/Second.h\"\n"},
        {"UI/Second.h", "#include \"UI/Third.h\"\n"},
        {"UI/Third.h", "#include \"UI/First.h\"\n"},
    });
    EXPECT_EQ(join(wrongArrows(tree.read())), "");
    EXPECT_EQ(join(circles(tree.read())), "circle: UI/First.h -> UI/Second.h -> UI/Third.h -> UI/First.h");
}

TEST(RoomOrder, findsACircleOfRoomsWithoutACircleOfFiles)
{
    const MadeUpTree tree({
        {"Core/Store.h", "#include \"Models/Text.h\"\n"},
        {"Models/Text.h", ""},
        {"Models/Task.h", "#include \"Core/Other.h\"\n"},
        {"Core/Other.h", ""},
    });
    EXPECT_EQ(join(circles(tree.read())), "circle: core -> models -> core");
}

} // namespace
