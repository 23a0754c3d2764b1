#pragma once

// A private desktop on which the utility captures the selection of real applications, pressed for by its real shortcut,
// with contents on the clipboard that nothing may harm.
//
// Main thread. A test calls setUp() first of all.

#include "desktop/Desktop.h"
#include "desktop/Printing.h"
#include "desktop/TranslateProgram.h"
#include "service/LoopbackService.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <chrono>
#include <memory>
#include <vector>

namespace orvesa::desktop {

/// What one press of the shortcut led to.
struct Captured {
    QString text;     ///< what the panel shows as the original; empty when nothing was captured
    QString message;  ///< the panel's message when nothing was captured
    QString strategy; ///< the last of the steps in the utility's debug line, without its time
    int milliseconds = 0;
    QString line; ///< the debug line
};

class CaptureStage : public ::testing::Test {
protected:
    void setUp(const DesktopOptions &options = {});
    void TearDown() override;

    /// Another program copies a picture, text and a type of its own.
    Process &copyPicture(qsizetype bytes = 100'000);
    /// Everything on the clipboard as another program sees it, with the order of its targets.
    QByteArray clipboard();
    /// Presses the translate shortcut, holds it for so long, and waits for the capture's end and the panel.
    Captured capture(std::chrono::milliseconds hold = std::chrono::milliseconds::zero());

    /// Starts an application and waits until its window is the active one.
    Process &open(const QString &name, const QStringList &arguments, const QString &windowClass,
                  const EnvironmentChanges &changes = {}, std::chrono::milliseconds deadline = usualDeadline);
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    /// Waits until something of the process that has text has the keyboard.
    Accessible awaitFocusedText(qint64 pid, std::chrono::milliseconds deadline = usualDeadline);
    /// Presses the keys, and waits until PRIMARY holds the text.
    void select(const QString &keys, const QString &text);
    /// What is in a text area, asked for by the user's own keys: select all, copy.
    QString contentByKeys();

    /// One line of the table of applications, recorded and printed.
    void note(const QString &column, const Captured &captured);

    /// Blanks at its beginning, several scripts, an emoji of several characters, empty lines.
    static const QString sample;
    static const QString nothingSelected;

    service::LoopbackService service;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<TranslateProgram> program;

private:
    [[nodiscard]] QStringList captureLines() const;

    xcb_window_t m_window = 0;
    Process *m_owner = nullptr;
};

} // namespace orvesa::desktop
