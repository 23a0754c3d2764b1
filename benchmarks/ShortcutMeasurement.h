#pragma once

// How long the product takes from the shortcut's press until its panel is mapped and painted and its request arrives.
//
// Drives one running product on the stage, whose editor has text selected. Main thread; the stage and the process must
// outlive it.

#include "BenchStage.h"
#include "WindowProbe.h"

namespace orvesa::benchmark {

/// Milliseconds since the key went down.
struct PressTimes {
    double mapped = 0;
    double painted = 0;
    double request = 0; ///< its first byte, after decryption, at the service
};

class ShortcutMeasurement final {
public:
    ShortcutMeasurement(BenchStage &stage, const desktop::Process &product);

    /// Presses the translate shortcut once and has the panel away again when it returns. Throws when something of it
    /// does not happen.
    [[nodiscard]] PressTimes press();

private:
    /// What the product's windows say, for the message of a failure.
    [[nodiscard]] QString shownTexts() const;
    void dismissPanel();

    BenchStage &m_stage;
    const desktop::Process &m_product;
    WindowProbe m_probe;
};

} // namespace orvesa::benchmark
