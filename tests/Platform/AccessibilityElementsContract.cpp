#include "Platform/AccessibilityElementsContract.h"

#include <gtest/gtest.h>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

namespace {

const AccessibilityValue none;

AccessibilityElement elementIn(const AccessibilityValue &value)
{
    const auto *const element = std::get_if<AccessibilityElement>(&value);
    return element == nullptr ? nullptr : *element;
}

class Contract final {
public:
    explicit Contract(AccessibilityElementsPort &elements) : m_elements(elements) {}

    [[nodiscard]] AccessibilityValue read(const AccessibilityElement &element, const QString &attribute)
    {
        return m_elements.copyAttribute(element, attribute);
    }

    /// The first item below the element that Command and C choose.
    [[nodiscard]] AccessibilityElement copyItem(const AccessibilityElement &element, int depth = 0)
    {
        const AccessibilityValue list = read(element, u"AXChildren"_s);
        const auto *const children = std::get_if<std::vector<AccessibilityElement>>(&list);
        if (children == nullptr || depth > 5) {
            return nullptr;
        }
        for (const AccessibilityElement &child : *children) {
            EXPECT_NE(child, nullptr) << "a list holds elements";
            const AccessibilityValue character = read(child, u"AXMenuItemCmdChar"_s);
            const auto *const text = std::get_if<QString>(&character);
            if (text != nullptr && text->toUpper() == u"C"_s &&
                read(child, u"AXMenuItemCmdModifiers"_s) == AccessibilityValue(qint64{0})) {
                return child;
            }
            if (const AccessibilityElement found = copyItem(child, depth + 1)) {
                return found;
            }
        }
        return nullptr;
    }

    /// An element that answers nothing and does nothing.
    void isNothing(const AccessibilityElement &element)
    {
        for (const QString &attribute :
             {u"AXFocusedUIElement"_s, u"AXSelectedText"_s, u"AXMenuBar"_s, u"AXChildren"_s}) {
            EXPECT_EQ(read(element, attribute), none) << attribute.toStdString();
        }
        EXPECT_NE(read(element, u"AXEnabled"_s), AccessibilityValue(true)) << "what has gone may be called disabled";
        EXPECT_FALSE(m_elements.performAction(element, u"AXPress"_s));
    }

private:
    AccessibilityElementsPort &m_elements;
};

} // namespace

void expectAccessibilityElementsContract(AccessibilityElementsPort &elements, const AccessibilityBench &bench)
{
    Contract contract(elements);

    // The selection is read from the focused element as it is, and reading changes nothing.
    const AccessibilityElement systemWide = elements.systemWide();
    ASSERT_NE(systemWide, nullptr);
    const AccessibilityElement focused = elementIn(contract.read(systemWide, u"AXFocusedUIElement"_s));
    ASSERT_NE(focused, nullptr);
    EXPECT_EQ(contract.read(focused, u"AXSelectedText"_s), AccessibilityValue(bench.selection));
    EXPECT_EQ(contract.read(focused, u"AXSelectedText"_s), AccessibilityValue(bench.selection));

    // A command is found from the application's menu bar downwards, and chosen like a click.
    const AccessibilityElement application = elements.application(bench.application);
    ASSERT_NE(application, nullptr);
    const AccessibilityElement menuBar = elementIn(contract.read(application, u"AXMenuBar"_s));
    ASSERT_NE(menuBar, nullptr);
    const AccessibilityElement copy = contract.copyItem(menuBar);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(contract.read(copy, u"AXEnabled"_s), AccessibilityValue(true));
    EXPECT_FALSE(elements.performAction(copy, u"AXUnknown"_s));
    EXPECT_TRUE(elements.performAction(copy, u"AXPress"_s));
    EXPECT_TRUE(bench.isCopied());

    // What there is not has no value, whoever is asked.
    EXPECT_EQ(contract.read(focused, u"AXUnknown"_s), none);
    EXPECT_EQ(contract.read(application, QString()), none);
    EXPECT_EQ(contract.read(copy, u"AXFocusedUIElement"_s), none);
    contract.isNothing(nullptr);
    contract.isNothing(std::make_shared<const AccessibilityElementHandle>());
    constexpr qint64 noProcess = 0x3ffffffe;
    contract.isNothing(elements.application(noProcess));

    // Elements may outlive what they stand for.
    bench.endApplication();
    contract.isNothing(focused);
    contract.isNothing(application);
    contract.isNothing(copy);
}

} // namespace orvesa::tests
