#pragma once

// What tests of the settings window share: the program with its window open, and a look at what it stored. Main thread.

#include "desktop/ProgramFixture.h"
#include "desktop/SettingsWindow.h"

namespace orvesa::desktop {

class SettingsFixture : public ProgramFixture {
protected:
    /// The desktop and the program, without any key.
    void setUpWithoutKey(const DesktopOptions &options = {});
    /// Starts the program and opens its settings.
    void openSettings();
    /// The key that the product has stored; nothing when there is none.
    [[nodiscard]] std::optional<QByteArray> storedKey(const QString &account = QStringLiteral("openai_api_key"));
    /// The preferences file as the product wrote it.
    [[nodiscard]] QString preferences() const;
    /// Until the preferences file contains the text, or does not.
    void awaitPreference(const QString &text);
    void awaitNoPreference(const QString &text);

    std::unique_ptr<SettingsWindow> settings;
};

} // namespace orvesa::desktop
