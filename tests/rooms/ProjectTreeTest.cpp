// The checks over this very tree.

#include "rooms/RoomOrder.h"
#include "rooms/SourceRules.h"

#include <gtest/gtest.h>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

const SourceTree &treeBelow(const QString &folder)
{
    static std::map<QString, SourceTree> trees;
    return trees.try_emplace(folder, QStringLiteral(ORVESA_PROJECT_FOLDER) + u'/' + folder).first->second;
}

std::string join(const QStringList &findings)
{
    return findings.join(u'\n').toStdString();
}

TEST(ProjectTree, isFound)
{
    EXPECT_GT(treeBelow(u"src"_s).paths().size(), 50);
    EXPECT_TRUE(treeBelow(u"src"_s).contains(u"Platform/ClockPort.h"_s));
    EXPECT_TRUE(treeBelow(u"tests"_s).contains(u"rooms/ProjectTreeTest.cpp"_s));
}

TEST(ProjectTree, hasNoArrowThatPointsUp)
{
    EXPECT_EQ(join(wrongArrows(treeBelow(u"src"_s))), "");
}

TEST(ProjectTree, hasNoCircle)
{
    EXPECT_EQ(join(circles(treeBelow(u"src"_s))), "");
}

TEST(ProjectTree, beginsEveryFileProperly)
{
    for (const auto &folder : {u"src"_s, u"tests"_s, u"benchmarks"_s}) {
        EXPECT_EQ(join(wrongBeginnings(treeBelow(folder))), "") << folder.toStdString();
    }
}

TEST(ProjectTree, keepsPlatformsInTheirRoom)
{
    EXPECT_EQ(join(platformLeaks(treeBelow(u"src"_s))), "");
}

TEST(ProjectTree, showsPlainTextOnly)
{
    EXPECT_EQ(join(richTexts(treeBelow(u"src"_s))), "");
}

TEST(ProjectTree, listsEverySource)
{
    for (const auto &folder : {u"src"_s, u"tests"_s, u"benchmarks"_s}) {
        EXPECT_EQ(join(unlistedSources(treeBelow(folder))), "") << folder.toStdString();
    }
}

} // namespace
