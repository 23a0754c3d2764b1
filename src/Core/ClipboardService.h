#pragma once

// Writes texts to the pasteboard that the user pastes from. Main thread; the port must outlive the service.

#include "Platform/PasteboardPort.h"

#include <QString>

namespace orvesa {

class ClipboardService final {
public:
    explicit ClipboardService(PasteboardPort &pasteboard);

    /// Replaces what is on the pasteboard by the text, as plain text.
    void copy(const QString &text);

private:
    PasteboardPort &m_pasteboard;
};

} // namespace orvesa
