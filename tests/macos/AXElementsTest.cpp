#include "Platform/macos/AXElements.h"

#include "Platform/macos/AXTrust.h"

#include "Platform/AccessibilityElementsContract.h"
#include "Platform/AccessibilityTrustContract.h"
#include "fakes/FakeAccessibilityElements.h"
#include "macos/RecorderTest.h"
#include "macos/recorders/Accessibility.h"

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;
using recorders::ArrayObject;
using recorders::BooleanObject;
using recorders::DataObject;
using recorders::ElementObject;
using recorders::NumberObject;
using recorders::StringObject;
using tests::Calls;

namespace {

template <typename Type>
const Type *held(const AccessibilityValue &value)
{
    return std::get_if<Type>(&value);
}

/// The system's own constant.
recorders::Object *booleanObject(bool value)
{
    return recorders::referenceTo<recorders::Object *>(
        reinterpret_cast<const recorders::Object *>(value ? kCFBooleanTrue : kCFBooleanFalse));
}

bool isNone(const AccessibilityValue &value)
{
    return std::holds_alternative<std::monostate>(value);
}

class AXElementsTest : public tests::RecorderTest {
protected:
    /// The value of an attribute of an application element.
    [[nodiscard]] AccessibilityValue read(recorders::Object *value)
    {
        m_accessibility.application(7).setAttribute(u"AXValue"_s, value);
        return m_elements.copyAttribute(m_elements.application(7), u"AXValue"_s);
    }

    recorders::Accessibility m_accessibility;
    AXElements m_elements;
};

class AXTrustTest : public tests::RecorderTest {
protected:
    recorders::Accessibility m_accessibility;
    AXTrust m_trust;
};

} // namespace

TEST_F(AXElementsTest, KeepsTheContract)
{
    const auto set = [](ElementObject &element, const QString &attribute, recorders::Object *value) {
        element.setAttribute(attribute, value);
        return value;
    };
    auto *const copy = new ElementObject("Copy");
    set(*copy, u"AXMenuItemCmdChar"_s, new StringObject(u"C"_s));
    set(*copy, u"AXMenuItemCmdModifiers"_s, new NumberObject(std::int64_t{0}));
    set(*copy, u"AXEnabled"_s, booleanObject(true));
    auto *const edit = new ElementObject("Edit");
    set(*edit, u"AXChildren"_s, new ArrayObject({copy}));
    auto *const menuBar = new ElementObject("menu bar");
    set(*menuBar, u"AXChildren"_s, new ArrayObject({edit}));
    auto *const focused = new ElementObject("text area");
    set(*focused, u"AXSelectedText"_s, new StringObject(u" 選択 \n"_s));
    set(m_accessibility.application(7), u"AXMenuBar"_s, menuBar);
    set(m_accessibility.systemWide(), u"AXFocusedUIElement"_s, focused);
    tests::expectAccessibilityElementsContract(
        m_elements,
        {
            .application = 7,
            .selection = u" 選択 \n"_s,
            .isCopied =
                [] { return std::ranges::count(recorders::calls(), "AXUIElementPerformAction Copy AXPress") == 1; },
            .endApplication =
                [&] {
                    for (ElementObject *const element :
                         {copy, edit, menuBar, focused, &m_accessibility.application(7)}) {
                        element->fail(kAXErrorInvalidUIElement);
                    }
                },
        });
    copy->release();
    edit->release();
}

TEST_F(AXElementsTest, BoundsEveryCallOfTheProcess)
{
    EXPECT_NE(m_elements.systemWide(), nullptr);
    EXPECT_EQ(recorders::calls(),
              (Calls{"AXUIElementCreateSystemWide", "AXUIElementSetMessagingTimeout systemWide 0.25"}));
}

TEST_F(AXElementsTest, ReadsTheSelectionOfTheFocusedElement)
{
    auto *const focused = new ElementObject("text area");
    focused->setAttribute(u"AXSelectedText"_s, new StringObject(u"  選択 \n"_s));
    m_accessibility.systemWide().setAttribute(u"AXFocusedUIElement"_s, focused);

    const AccessibilityValue element = m_elements.copyAttribute(m_elements.systemWide(), u"AXFocusedUIElement"_s);
    ASSERT_NE(held<AccessibilityElement>(element), nullptr);
    const AccessibilityValue text = m_elements.copyAttribute(*held<AccessibilityElement>(element), u"AXSelectedText"_s);
    ASSERT_NE(held<QString>(text), nullptr);
    EXPECT_EQ(*held<QString>(text), u"  選択 \n"_s);
    EXPECT_EQ(recorders::calls().back(), "AXUIElementCopyAttributeValue text area AXSelectedText");
}

TEST_F(AXElementsTest, TellsTypesApart)
{
    EXPECT_EQ(*held<QString>(read(new StringObject(u"copy:"_s))), u"copy:"_s);
    EXPECT_EQ(*held<qint64>(read(new NumberObject(std::int64_t{0}))), 0);
    EXPECT_EQ(*held<qint64>(read(new NumberObject(std::int64_t{-5'000'000'000}))), -5'000'000'000);
    EXPECT_TRUE(isNone(read(new NumberObject(1.5))));
    EXPECT_TRUE(isNone(read(new DataObject("bytes"))));
    EXPECT_NE(held<AccessibilityElement>(read(new ElementObject("child"))), nullptr);
}

TEST_F(AXElementsTest, ReadsBooleans)
{
    for (const bool value : {true, false}) {
        const AccessibilityValue read = this->read(booleanObject(value));
        ASSERT_NE(held<bool>(read), nullptr);
        EXPECT_EQ(*held<bool>(read), value);
    }
}

TEST_F(AXElementsTest, ReadsListsOfElementsOnly)
{
    auto *const first = new ElementObject("first");
    auto *const second = new ElementObject("second");
    auto *const text = new StringObject(u"text"_s);
    const AccessibilityValue list = read(new ArrayObject({first, second}));
    ASSERT_NE(held<std::vector<AccessibilityElement>>(list), nullptr);
    EXPECT_EQ(held<std::vector<AccessibilityElement>>(list)->size(), 2U);
    EXPECT_TRUE(held<std::vector<AccessibilityElement>>(read(new ArrayObject({})))->empty());
    EXPECT_TRUE(isNone(read(new ArrayObject({first, text}))));
    for (recorders::Object *const made : std::initializer_list<recorders::Object *>{first, second, text}) {
        made->release();
    }
}

TEST_F(AXElementsTest, KeepsElementsAliveThatItsListLetGo)
{
    auto *const child = new ElementObject("child");
    child->setAttribute(u"AXIdentifier"_s, new StringObject(u"copy:"_s));
    const AccessibilityValue list = read(new ArrayObject({child}));
    child->release();
    m_accessibility.application(7).attributes.extract(u"AXValue"_s).mapped()->release();
    const AccessibilityValue identifier =
        m_elements.copyAttribute(held<std::vector<AccessibilityElement>>(list)->front(), u"AXIdentifier"_s);
    EXPECT_EQ(*held<QString>(identifier), u"copy:"_s);
}

TEST_F(AXElementsTest, HasNoValueWhereACallFails)
{
    (void)m_accessibility.application(7);
    const AccessibilityElement application = m_elements.application(7);
    EXPECT_TRUE(isNone(m_elements.copyAttribute(application, u"AXMenuBar"_s)));
    for (const AXError error :
         {kAXErrorFailure, kAXErrorCannotComplete, kAXErrorAPIDisabled, kAXErrorInvalidUIElement}) {
        m_accessibility.application(7).fail(error);
        EXPECT_TRUE(isNone(m_elements.copyAttribute(application, u"AXMenuBar"_s)));
        EXPECT_FALSE(m_elements.performAction(application, u"AXPress"_s));
    }
    EXPECT_TRUE(isNone(m_elements.copyAttribute(nullptr, u"AXMenuBar"_s)));
    EXPECT_FALSE(m_elements.performAction(nullptr, u"AXPress"_s));
}

TEST_F(AXElementsTest, HasNoValueForAnElementOfAnotherKind)
{
    FakeAccessibilityElements others;
    EXPECT_TRUE(isNone(m_elements.copyAttribute(others.systemWide(), u"AXChildren"_s)));
    EXPECT_FALSE(m_elements.performAction(others.systemWide(), u"AXPress"_s));
}

TEST_F(AXElementsTest, PerformsAnAction)
{
    (void)m_accessibility.application(7);
    EXPECT_TRUE(m_elements.performAction(m_elements.application(7), u"AXPress"_s));
    EXPECT_EQ(recorders::calls(),
              (Calls{"AXUIElementCreateApplication 7", "AXUIElementPerformAction application 7 AXPress"}));
}

TEST_F(AXTrustTest, KeepsTheContract)
{
    tests::expectAccessibilityTrustContract(
        m_trust, {
                     .decide = [this](bool isGiven) { m_accessibility.isTrusted = isGiven; },
                     .requests =
                         [] {
                             return static_cast<int>(std::ranges::count(recorders::calls(),
                                                                        "AXIsProcessTrustedWithOptions "
                                                                        "{AXTrustedCheckOptionPrompt: true}"));
                         },
                 });
}

TEST_F(AXTrustTest, AsksWithoutAPrompt)
{
    EXPECT_TRUE(m_trust.isTrusted());
    m_accessibility.isTrusted = false;
    EXPECT_FALSE(m_trust.isTrusted());
    EXPECT_EQ(recorders::calls(), (Calls{"AXIsProcessTrusted", "AXIsProcessTrusted"}));
}

TEST_F(AXTrustTest, RequestsWithThePrompt)
{
    m_trust.requestTrust();
    EXPECT_EQ(recorders::calls(), (Calls{"AXIsProcessTrustedWithOptions {AXTrustedCheckOptionPrompt: true}"}));
}

} // namespace orvesa
