#include "App/SettingsViewFixture.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>

namespace orvesa {

SettingsViewTest::SettingsViewTest()
{
    settings.setAppLanguage(AppLanguage::english);
}

void SettingsViewTest::open(SettingsSection section)
{
    controller = std::make_unique<SettingsWindowController>(services());
    controller->showWindow();
    view().setSelection(section);
    settle();
}

void SettingsViewTest::settle()
{
    for (int level = 0; level < 10; ++level) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

QStringList SettingsViewTest::shownTexts() const
{
    QStringList texts;
    const auto labels = view().findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (label->isVisible() && !label->text().isEmpty()) {
            texts.append(label->text());
        }
    }
    return texts;
}

QString SettingsViewTest::textOf(const QWidget &widget)
{
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button == nullptr ? QString() : button->text();
}

} // namespace orvesa
