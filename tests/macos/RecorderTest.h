#pragma once

// What every test over the recorders checks at its end: nothing made is left alive, and nothing was used wrongly.

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa::tests {

using Calls = std::vector<std::string>;

class RecorderTest : public ::testing::Test {
protected:
    RecorderTest() { recorders::forgetCalls(); }
    ~RecorderTest() override
    {
        EXPECT_EQ(recorders::liveObjects(), 0) << "something was not released";
        EXPECT_THAT(recorders::misuses(), ::testing::IsEmpty());
    }
    RecorderTest(const RecorderTest &) = delete;
    RecorderTest &operator=(const RecorderTest &) = delete;
};

} // namespace orvesa::tests
