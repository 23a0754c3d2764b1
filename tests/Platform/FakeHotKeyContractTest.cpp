#include "Platform/HotKeyContract.h"
#include "fakes/FakeHotKeys.h"

#include <gtest/gtest.h>

namespace orvesa {

TEST(FakeHotKeyContract, IsKept)
{
    FakeHotKeys hotKeys;
    const tests::HotKeyBench bench{
        .press = [&](quint32 keyCode, quint32 modifiers) { (void)hotKeys.press(keyCode, modifiers); },
        .deliver = [] {},
        .takeByAnother = [&](quint32 keyCode, quint32 modifiers) { hotKeys.takeByAnother(keyCode, modifiers); },
    };
    tests::expectHotKeyContract(hotKeys, bench);
}

} // namespace orvesa
