// The fakes that the tests of selection capture rely on, held to what the real adapters promise.

#include "Platform/AccessibilityElementsContract.h"
#include "Platform/AccessibilityTrustContract.h"
#include "Platform/KeyboardEventContract.h"
#include "Platform/PasteboardContract.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakePasteboard.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;

TEST(FakeAccessibilityElementsContract, IsKept)
{
    FakeAccessibilityElements elements;
    const AccessibilityElement copy = elements.makeElement(
        {{u"AXMenuItemCmdChar"_s, u"C"_s}, {u"AXMenuItemCmdModifiers"_s, qint64{0}}, {u"AXEnabled"_s, true}});
    const AccessibilityElement edit = elements.makeElement({{u"AXChildren"_s, std::vector{copy}}});
    const AccessibilityElement menuBar = elements.makeElement({{u"AXChildren"_s, std::vector{edit}}});
    elements.setApplication(7, elements.makeElement({{u"AXMenuBar"_s, menuBar}}));
    elements.focusSelectedText(u" 選択 \n"_s);
    elements.setActionHandler([&](const FakeAccessibilityElements::Action &action) {
        return action.element == copy && action.name == u"AXPress"_s;
    });
    tests::expectAccessibilityElementsContract(
        elements, {
                      .application = 7,
                      .selection = u" 選択 \n"_s,
                      .isCopied =
                          [&] {
                              return std::ranges::count(elements.actions(),
                                                        FakeAccessibilityElements::Action{copy, u"AXPress"_s}) == 1;
                          },
                      .endApplication = [&elements] { elements.endApplications(); },
                  });
}

TEST(FakeAccessibilityTrustContract, IsKept)
{
    using Trust = FakeAccessibilityTrust::Trust;
    FakeAccessibilityTrust trust;
    tests::expectAccessibilityTrustContract(
        trust, {
                   .decide = [&trust](bool isGiven) { trust.setTrust(isGiven ? Trust::granted : Trust::missing); },
                   .requests = [&trust] { return trust.requests(); },
               });
}

TEST(FakeKeyboardEventContract, IsKept)
{
    FakeKeyboardEvents keyboard;
    std::size_t seen = 0;
    const auto received = [&] {
        std::vector<tests::ReceivedKey> keys;
        for (; seen < keyboard.posted().size(); ++seen) {
            const FakeKeyboardEvents::Event &event = keyboard.posted()[seen];
            keys.push_back({event.keyCode, event.transition, event.flags});
        }
        return keys;
    };
    tests::expectKeyboardEventContract(keyboard, {
                                                     .hold = [&keyboard](quint32 flags) { keyboard.hold(flags); },
                                                     .received = received,
                                                     .breakDown =
                                                         [&keyboard] {
                                                             keyboard.refuse(KeyTransition::down);
                                                             keyboard.refuse(KeyTransition::up);
                                                         },
                                                 });
}

TEST(FakePasteboardContract, IsKept)
{
    FakePasteboard pasteboard;
    tests::expectPasteboardContract(
        pasteboard, {
                        .copyFromOutside = [&pasteboard](const QString &text) { pasteboard.copyFromOutside(text); },
                        .pasteOutside = [&pasteboard] { return pasteboard.text(); },
                    });
}

} // namespace orvesa
