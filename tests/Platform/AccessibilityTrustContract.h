#pragma once

// What every desktop's accessibility trust promises, to be asked of the fake that other tests rely on and of the real
// ones.

#include "Platform/AccessibilityTrustPort.h"

#include <functional>

namespace orvesa::tests {

struct AccessibilityTrustBench {
    /// The user gives or withdraws the trust; returns when the port can know.
    std::function<void(bool isGiven)> decide;
    /// How often the user has been asked.
    std::function<int()> requests;
};

void expectAccessibilityTrustContract(AccessibilityTrustPort &trust, const AccessibilityTrustBench &bench);

} // namespace orvesa::tests
