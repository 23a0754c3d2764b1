#pragma once

// The whole application over fakes: what a test of the coordinator, the menu or the delegate needs. Main thread.

#include "App/FakeProviders.h"
#include "App/TranslationCoordinator.h"
#include "Core/ClipboardService.h"
#include "Core/OCRService.h"
#include "Core/SettingsStore.h"
#include "Core/TextSelectionService.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakeMouseMonitor.h"
#include "fakes/FakePanelWindow.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWorkspace.h"

#include <QFile>

#include <memory>

namespace orvesa {

/// A screenshot tool that the user leaves, or that writes a file for the recognition to read.
class FakeScreen final : public ScreenCapturePort, public TextRecognitionPort {
public:
    QCoro::Task<bool> captureInteractively(QString outputPath, std::stop_token) override
    {
        if (starts && captures) {
            QFile file(outputPath);
            starts = file.open(QIODevice::WriteOnly);
        }
        path = outputPath;
        co_return starts;
    }

    void prepare() override {}
    QCoro::Task<std::optional<QStringList>> recognize(QString, std::stop_token) override { co_return lines; }

    bool starts = true;
    bool captures = true;
    std::optional<QStringList> lines;
    QString path;
};

struct ApplicationOnFakes {
    [[nodiscard]] const std::vector<std::shared_ptr<FakeProviders::Call>> &calls() const { return providers.calls(); }

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    FakeAccessibilityTrust trust;
    FakeAccessibilityElements elements;
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeKeyboardEvents keyboard;
    FakePanelWindow panelWindow;
    FakeMouseMonitor mouse;
    FakeClock clock;
    FakeScreen screen;
    FakeProviders providers;
    TextSelectionService selection{{elements, trust, workspace, keyboard, pasteboard, clock}};
    ClipboardService clipboard{pasteboard};
    OCRService ocr{screen, screen};
    FloatingResultPanelController panel{settings, panelWindow, mouse};
    std::unique_ptr<TranslationCoordinator> coordinator = std::make_unique<TranslationCoordinator>(
        TranslationCoordinator::Collaborators{trust, selection, clipboard, ocr, settings, providers, panel, clock});
};

} // namespace orvesa
