#pragma once

// What the desktop offers, asked of its buses, its X server and the programs beside ours.
//
// Main thread. No service is started by a question; each answer is bounded by two seconds.

#include "Platform/DesktopInspectionPort.h"

#include <QString>

namespace orvesa {

class LinuxDesktopInspection final : public DesktopInspectionPort {
public:
    /// The paths of the programs that stand beside the main one.
    struct Tools {
        QString capture;
        QString recognition;
    };

    explicit LinuxDesktopInspection(Tools tools);

    [[nodiscard]] QString desktopName() const override;
    [[nodiscard]] Session session() const override;
    [[nodiscard]] bool hasDisplay() const override;
    [[nodiscard]] bool hasShortcutPortal() const override;
    [[nodiscard]] Accessibility accessibility() const override;
    [[nodiscard]] KeyStore keyStore() const override;
    [[nodiscard]] Tray tray() const override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> missingRecognitionLanguages() override;
    [[nodiscard]] ScreenCapture screenCapture() const override;

private:
    Tools m_tools;
};

} // namespace orvesa
