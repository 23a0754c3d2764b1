#pragma once

// What the tests of reading the selection share: the service over fakes of its ports, and captures that are begun and
// looked at while a clock stands or is moved.
//
// Main thread; nothing waits in earnest.

#include "Core/TextSelectionService.h"
#include "Models/AppError.h"
#include "fakes/FakeAccessibilityElements.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeKeyboardEvents.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace orvesa {

class TextSelectionServiceTest : public ::testing::Test {
protected:
    using Items = std::vector<PasteboardItem>;

    /// Where a capture that was begun has got to.
    struct Capture {
        std::optional<QString> text;
        std::optional<AppError> error;
        bool isOver = false;
    };

    TextSelectionServiceTest();

    static std::shared_ptr<Capture> beginOn(TextSelectionService &service, std::stop_token stop = {});
    std::shared_ptr<Capture> begin(std::stop_token stop = {}) { return beginOn(m_service, std::move(stop)); }
    /// Longer than any capture takes.
    std::shared_ptr<Capture> runToEnd();
    /// The text of a whole capture.
    QString capture();
    std::optional<AppError> captureError() { return runToEnd()->error; }

    std::optional<QString> read() { return TextSelectionService::selectedTextViaAccessibility(m_elements); }

    /// The application in front has a Copy item.
    AccessibilityElement addCopyItem(bool isEnabled);
    /// The copy keystroke copies.
    void copyOnKeystroke(const QString &text);

    /// What is on the pasteboard before a capture.
    const PasteboardItem m_kept;
    const AppError m_noSelectedText{AppError::Kind::noSelectedText};

    FakeAccessibilityElements m_elements;
    FakeAccessibilityTrust m_trust;
    FakeWorkspace m_workspace;
    FakeKeyboardEvents m_keyboard;
    FakePasteboard m_pasteboard;
    FakeClock m_clock;
    TextSelectionService m_service{{m_elements, m_trust, m_workspace, m_keyboard, m_pasteboard, m_clock}};

private:
    static QCoro::Task<void> runInto(TextSelectionService &service, std::shared_ptr<Capture> capture,
                                     std::stop_token stop);
};

} // namespace orvesa
