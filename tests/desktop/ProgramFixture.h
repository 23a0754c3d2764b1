#pragma once

// What whole-program tests share: a desktop, the scripted service, the product set up for it, and an editor.
//
// Main thread. A test calls setUp() with the desktop that it wants, first of all.

#include "desktop/Desktop.h"
#include "desktop/Printing.h"
#include "desktop/TextEditor.h"
#include "desktop/TranslateProgram.h"
#include "service/LoopbackService.h"
#include "service/ServiceAnswers.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <memory>

namespace orvesa::desktop {

class ProgramFixture : public ::testing::Test {
protected:
    /// The desktop, the program's preferences and, where there is an unlocked key store, its key.
    void setUp(const DesktopOptions &options = {});
    /// The utility is started and the editor holds the text, selected.
    void startOver(const QString &text);
    void pressTranslate();
    /// Until the panel's result contains the text; the whole result.
    QString awaitResultWith(const QString &part);
    [[nodiscard]] static service::ServiceResponse answer(const QString &text);

    service::LoopbackService service;
    QByteArray key;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<TranslateProgram> program;
    std::unique_ptr<TextEditor> editor;

    /// The failure when no key can be had.
    static const QString missingKeyMessage;
};

} // namespace orvesa::desktop
