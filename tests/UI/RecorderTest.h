#pragma once

// What the tests of the shortcut recorders share: a window with the recorders of two actions and that of a prompt, over
// settings and a keyboard of the test's own.
//
// Main thread, in an application with widgets.

#include "Core/HotKeyRecordingState.h"
#include "Core/SettingsStore.h"
#include "UI/HotKeyRecorderView.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <QString>
#include <QWidget>

#include <optional>
#include <vector>

namespace orvesa {

class RecorderTest : public testing::Test {
protected:
    RecorderTest();
    ~RecorderTest() override;

    /// Adds to the messages.
    KeyComboRecorderView::Feedback feedback();
    static void clickWithMouse(QWidget &widget);
    static void type(QWidget &widget, Qt::Key key);
    void expectIdle() const;

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    HotKeyRecordingState state;
    FakeKeyMonitor keys;
    std::vector<std::optional<QString>> messages;
    std::optional<KeyCombo> promptCombo;
    QWidget window;
    HotKeyRecorderView translate{HotKeyAction::translateSelection, settings, feedback(), state, keys};
    HotKeyRecorderView polish{HotKeyAction::polishSelection, settings, feedback(), state, keys};
    KeyComboRecorderView prompt{
        {[this] { return promptCombo; }, [this](const KeyCombo &combo) { promptCombo = combo; }},
        QStringLiteral("None"),
        {},
        {},
        state,
        keys};
};

} // namespace orvesa
