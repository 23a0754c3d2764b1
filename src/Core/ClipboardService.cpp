#include "Core/ClipboardService.h"

namespace orvesa {

ClipboardService::ClipboardService(PasteboardPort &pasteboard) : m_pasteboard(pasteboard) {}

void ClipboardService::copy(const QString &text)
{
    m_pasteboard.clear();
    m_pasteboard.write({{{QString::fromLatin1(pasteboardPlainText), text.toUtf8()}}});
}

} // namespace orvesa
