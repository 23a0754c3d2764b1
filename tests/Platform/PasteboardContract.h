#pragma once

// What every desktop's pasteboard promises, to be asked of the fake that other tests rely on and of the real ones.

#include "Platform/PasteboardPort.h"

#include <functional>

namespace orvesa::tests {

struct PasteboardBench {
    /// Another program copies plain text; returns when the port can know.
    std::function<void(const QString &text)> copyFromOutside;
    /// Another program's view of the plain text, if there is one.
    std::function<std::optional<QString>()> pasteOutside;
    /// Returns when the count is another one; for desktops where emptying waits for a write() that may follow.
    std::function<void(qint64 count)> awaitChange = [](qint64) {};
};

void expectPasteboardContract(PasteboardPort &pasteboard, const PasteboardBench &bench);

} // namespace orvesa::tests
