#include "Core/AppMenuItemService.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeWorkspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Attributes = FakeAccessibilityElements::Attributes;
using Elements = std::vector<AccessibilityElement>;

constexpr qint64 process = 4711;

class AppMenuItemServiceTest : public ::testing::Test {
protected:
    AppMenuItemServiceTest() { m_workspace.setFrontmostApplication(process); }

    AccessibilityElement item(Attributes attributes) { return m_elements.makeElement(std::move(attributes)); }
    AccessibilityElement parent(Elements children) { return item({{u"AXChildren"_s, std::move(children)}}); }
    void setMenus(Elements menus)
    {
        m_elements.setApplication(process, item({{u"AXMenuBar"_s, parent(std::move(menus))}}));
    }
    /// A menu with only this in it, as macOS has it: the top-level menu holds a menu, which holds the items.
    void setItem(const AccessibilityElement &copy) { setMenus({parent({parent({item({}), copy})})}); }

    AppMenuItemService::LookupResult find()
    {
        return AppMenuItemService::find(m_elements, m_workspace, AppMenuItemService::EditAction::copy);
    }
    bool isFound(const AccessibilityElement &expected)
    {
        const auto result = find();
        const auto *const found = std::get_if<AppMenuItemService::Found>(&result);
        return found != nullptr && found->element == expected;
    }
    bool isNotFound() { return std::holds_alternative<AppMenuItemService::NotFound>(find()); }
    bool isDisabled() { return std::holds_alternative<AppMenuItemService::Disabled>(find()); }

    FakeAccessibilityElements m_elements;
    FakeWorkspace m_workspace;
};

TEST_F(AppMenuItemServiceTest, searchesFromTheUsualEditMenuOutward)
{
    using Order = std::vector<std::size_t>;
    const std::vector<Order> orders{{},
                                    {0},
                                    {1, 0},
                                    {2, 1, 0},
                                    {3, 2, 1, 0},
                                    {3, 2, 4, 1, 0},
                                    {3, 2, 4, 1, 5, 0},
                                    {3, 2, 4, 1, 5, 0, 6},
                                    {3, 2, 4, 1, 5, 0, 6, 7},
                                    {3, 2, 4, 1, 5, 0, 6, 7, 8},
                                    {3, 2, 4, 1, 5, 0, 6, 7, 8, 9},
                                    {3, 2, 4, 1, 5, 0, 6, 7, 8, 9, 10},
                                    {3, 2, 4, 1, 5, 0, 6, 7, 8, 9, 10, 11}};
    for (std::size_t count = 0; count < orders.size(); ++count) {
        EXPECT_EQ(AppMenuItemService::searchOrder(count), orders[count]) << count;
    }
}

TEST_F(AppMenuItemServiceTest, findsNothingWithoutAnApplicationAMenuBarOrMenus)
{
    EXPECT_TRUE(isNotFound()) << "no menu bar";
    m_elements.setApplication(process, item({{u"AXMenuBar"_s, u"text"_s}}));
    EXPECT_TRUE(isNotFound()) << "a menu bar that is no element";
    setMenus({});
    EXPECT_TRUE(isNotFound()) << "no menus";
    m_elements.setApplication(process, item({{u"AXMenuBar"_s, item({})}}));
    EXPECT_TRUE(isNotFound()) << "no list of menus";
    setItem(item({{u"AXIdentifier"_s, u"copy:"_s}}));
    EXPECT_FALSE(isNotFound());
    m_workspace.setFrontmostApplication(std::nullopt);
    EXPECT_TRUE(isNotFound()) << "no application";
}

TEST_F(AppMenuItemServiceTest, knowsTheItemByItsIdentifier)
{
    const AccessibilityElement copy = item({{u"AXIdentifier"_s, u"copy:"_s}, {u"AXTitle"_s, u"Anything"_s}});
    setItem(copy);
    EXPECT_TRUE(isFound(copy));
    setItem(item({{u"AXIdentifier"_s, u"cut:"_s}}));
    EXPECT_TRUE(isNotFound());
    setItem(item({{u"AXIdentifier"_s, true}}));
    EXPECT_TRUE(isNotFound());
}

TEST_F(AppMenuItemServiceTest, knowsTheItemByItsKey)
{
    for (const QString &character : {u"C"_s, u"c"_s}) {
        const AccessibilityElement copy =
            item({{u"AXMenuItemCmdChar"_s, character}, {u"AXMenuItemCmdModifiers"_s, qint64{0}}});
        setItem(copy);
        EXPECT_TRUE(isFound(copy));
    }
    setItem(item({{u"AXMenuItemCmdChar"_s, u"C"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{1}}}));
    EXPECT_TRUE(isNotFound()) << "Shift is held as well";
    setItem(item({{u"AXMenuItemCmdChar"_s, u"C"_s}}));
    EXPECT_TRUE(isNotFound()) << "no modifiers are known";
    setItem(item({{u"AXMenuItemCmdChar"_s, u"C"_s}, {u"AXMenuItemCmdModifiers"_s, false}}));
    EXPECT_TRUE(isNotFound()) << "the modifiers are no number";
    setItem(item({{u"AXMenuItemCmdChar"_s, u"X"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{0}}}));
    EXPECT_TRUE(isNotFound());
}

TEST_F(AppMenuItemServiceTest, tellsADisabledItem)
{
    const AccessibilityElement copy = item({{u"AXIdentifier"_s, u"copy:"_s}});
    setItem(copy);
    EXPECT_TRUE(isFound(copy)) << "no state counts as enabled";
    m_elements.setAttribute(copy, u"AXEnabled"_s, u"no"_s);
    EXPECT_TRUE(isFound(copy)) << "a state that is no Boolean counts as enabled";
    m_elements.setAttribute(copy, u"AXEnabled"_s, true);
    EXPECT_TRUE(isFound(copy));
    m_elements.setAttribute(copy, u"AXEnabled"_s, false);
    EXPECT_TRUE(isDisabled());
}

TEST_F(AppMenuItemServiceTest, stopsAtTheFirstItemInTheSearchOrder)
{
    const Attributes attributes{{u"AXIdentifier"_s, u"copy:"_s}};
    const AccessibilityElement inThird = item(attributes);
    const AccessibilityElement inFourth = item(attributes);
    const AccessibilityElement deeper = item(attributes);
    setMenus({parent({}), parent({}), parent({inThird}), parent({parent({deeper}), inFourth}), parent({})});
    EXPECT_TRUE(isFound(deeper)) << "depth first";
    const auto menusRead = std::ranges::count(m_elements.reads(), u"AXChildren"_s);
    EXPECT_EQ(menusRead, 3) << "the menu bar, the fourth menu, its submenu";
}

TEST_F(AppMenuItemServiceTest, visitsThreeMenusFromTheLast)
{
    const auto copy = [this] { return item({{u"AXIdentifier"_s, u"copy:"_s}}); };
    const std::vector<AccessibilityElement> items{copy(), copy(), copy()};
    setMenus({parent({items[0]}), parent({items[1]}), parent({items[2]})});
    EXPECT_TRUE(isFound(items[2]));
    setMenus({parent({items[0]}), parent({items[1]}), parent({})});
    EXPECT_TRUE(isFound(items[1]));
    setMenus({parent({items[0]}), parent({}), parent({})});
    EXPECT_TRUE(isFound(items[0]));
}

TEST_F(AppMenuItemServiceTest, takesTheFirstOfSeveralItemsInAMenu)
{
    const AccessibilityElement byKey =
        item({{u"AXMenuItemCmdChar"_s, u"C"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{0}}, {u"AXEnabled"_s, false}});
    const AccessibilityElement byName = item({{u"AXIdentifier"_s, u"copy:"_s}});
    setMenus({parent({byKey, byName})});
    EXPECT_TRUE(isDisabled()) << "the order in the menu decides";
    setMenus({parent({byName, byKey})});
    EXPECT_TRUE(isFound(byName));
}

TEST_F(AppMenuItemServiceTest, anApplicationThatDoesNotAnswerHasNoItem)
{
    // Every attribute gives nothing, as when all calls fail.
    m_elements.setApplication(process, item({}));
    EXPECT_TRUE(isNotFound());
    setMenus({item({}), item({}), item({}), item({})});
    EXPECT_TRUE(isNotFound());
    m_elements.setApplication(process, nullptr);
    EXPECT_TRUE(isNotFound());
}

TEST_F(AppMenuItemServiceTest, aShortcutWithShiftDoesNotHideTheItemBehindIt)
{
    const AccessibilityElement shifted =
        item({{u"AXMenuItemCmdChar"_s, u"C"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{1}}});
    const AccessibilityElement copy =
        item({{u"AXMenuItemCmdChar"_s, u"c"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{0}}});
    setMenus({parent({shifted, copy})});
    EXPECT_TRUE(isFound(copy));
}

TEST_F(AppMenuItemServiceTest, searchesFiveLevels)
{
    const AccessibilityElement copy = item({{u"AXIdentifier"_s, u"copy:"_s}});
    AccessibilityElement menu = copy;
    for (int level = 0; level <= AppMenuItemService::greatestDepth; ++level) {
        menu = parent({menu});
    }
    setMenus({menu});
    EXPECT_TRUE(isFound(copy));
    setMenus({parent({menu})});
    EXPECT_TRUE(isNotFound());
}

} // namespace
} // namespace orvesa
