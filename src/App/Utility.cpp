#include "App/Utility.h"

#include <QSslSocket>

namespace orvesa {

Utility::Utility(const Ports &ports)
    : m_keyStore(ports.keyStore), m_services(ports.userDefaults, ports.preferredLanguages, ports.keyStore),
      m_clipboard(ports.pasteboard),
      m_selection({ports.accessibilityElements, ports.accessibilityTrust, ports.workspace, ports.keyboardEvents,
                   ports.pasteboard, ports.clock}),
      m_ocr(ports.screenCapture, ports.textRecognition),
      m_panel(m_services.settings, ports.panelWindow, ports.mouseMonitor),
      m_coordinator({ports.accessibilityTrust, m_selection, m_clipboard, m_ocr, m_services.settings,
                     m_services.providers, m_panel, ports.clock}),
      m_delegate({m_coordinator, m_services.settings, m_services.keychain, m_services.providers, ports.hotKeys,
                  m_recording, ports.keyMonitor, ports.accessibilityTrust, ports.workspace, ports.tray})
{
}

Utility::~Utility()
{
    m_coordinator.cancelCurrentTask();
    m_keyStore.close();
}

std::deque<WarmUp::Piece> Utility::warmUpPieces()
{
    // In the order in which a press would come to need them.
    return {[this] { m_panel.prepare(); }, [] { QSslSocket::supportsSsl(); }, [] { OCRService::removeLeftovers(); }};
}

} // namespace orvesa
