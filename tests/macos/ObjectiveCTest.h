#pragma once

// A test over the recorders' Objective-C runtime: its pool is drained before the objects are counted.

#include "macos/RecorderTest.h"
#include "macos/recorders/ObjectiveC.h"

namespace orvesa::tests {

class ObjectiveCTest : public RecorderTest {
protected:
    ObjectiveCTest() = default;
    ~ObjectiveCTest() override { recorders::drainPool(); }
    ObjectiveCTest(const ObjectiveCTest &) = delete;
    ObjectiveCTest &operator=(const ObjectiveCTest &) = delete;
};

} // namespace orvesa::tests
