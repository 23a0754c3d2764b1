#pragma once

// What the utility needs of a desktop, taken from that desktop's bundle of adapters. For the compositions; main thread.
// The bundle and both tools must outlive the utility.

#include "App/Utility.h"

namespace orvesa::Composition {

template <typename Desktop>
[[nodiscard]] Utility::Ports portsOf(Desktop &desktop, ScreenCapturePort &capture, TextRecognitionPort &recognition)
{
    return {
        .userDefaults = desktop.userDefaults(),
        .preferredLanguages = desktop.preferredLanguages(),
        .keyStore = desktop.keyStore(),
        .clock = desktop.clock(),
        .hotKeys = desktop.hotKeys(),
        .keyMonitor = desktop.keyMonitor(),
        .tray = desktop.tray(),
        .workspace = desktop.workspace(),
        .accessibilityElements = desktop.accessibilityElements(),
        .accessibilityTrust = desktop.accessibilityTrust(),
        .keyboardEvents = desktop.keyboardEvents(),
        .pasteboard = desktop.pasteboard(),
        .mouseMonitor = desktop.mouseMonitor(),
        .panelWindow = desktop.panelWindow(),
        .screenCapture = capture,
        .textRecognition = recognition,
    };
}

} // namespace orvesa::Composition
