#pragma once

// How long it takes from letting go of the mouse to the request, and what a capture leaves in the resident program's
// memory, on a private desktop. Main thread; what does not happen throws.

#include <QString>

namespace orvesa::benchmark {

[[nodiscard]] QString screenPathReport();

} // namespace orvesa::benchmark
