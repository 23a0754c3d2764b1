#pragma once

// The settings window over fakes, with the English interface, and ways to find what it shows. Main thread.

#include "App/Settings/SettingsSidebar.h"
#include "App/Settings/SettingsView.h"
#include "App/Settings/SettingsWindowController.h"
#include "App/Settings/SidebarItem.h"
#include "App/SettingsFixture.h"

#include <gtest/gtest.h>

#include <QWidget>

#include <memory>

namespace orvesa {

class SettingsViewTest : public testing::Test, protected SettingsOnFakes {
protected:
    SettingsViewTest();

    void open(SettingsSection section = SettingsSection::general);
    /// Layouts inside layouts tell each other of their sizes through the event loop.
    static void settle();

    [[nodiscard]] SettingsView &view() const { return controller->view(); }
    [[nodiscard]] SidebarItem &item(SettingsSection section) const { return view().sidebar().item(section); }
    [[nodiscard]] QStringList shownTexts() const;

    /// A visible control by its accessible name or its text; null without one.
    template <typename Widget>
    [[nodiscard]] Widget *named(const QString &name, const QString &description = {}) const
    {
        const auto found = view().findChildren<Widget *>();
        for (Widget *widget : found) {
            if (widget->isVisible() && (widget->accessibleName() == name || textOf(*widget) == name) &&
                (description.isEmpty() || widget->accessibleDescription() == description)) {
                return widget;
            }
        }
        return nullptr;
    }
    [[nodiscard]] static QString textOf(const QWidget &widget);

    std::unique_ptr<SettingsWindowController> controller;
};

} // namespace orvesa
