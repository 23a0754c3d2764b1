#pragma once

// Several processes that change one preferences file at the same time.
//
// Call from a process with one thread: it forks.

#include <QString>

namespace orvesa::tests {

/// Has each of so many processes set so many keys of the domain in the folder, and expects every value to be there
/// afterwards.
void expectNothingLostBetween(int writers, int changes, const QString &domain, const QString &folder);

} // namespace orvesa::tests
