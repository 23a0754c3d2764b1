// Pictures of the shortcut recorder in its states, for people to look at: `recorder-gallery FOLDER`.

#include "Core/HotKeyRecordingState.h"
#include "Core/Localization.h"
#include "UI/KeyComboRecorderView.h"
#include "UI/Style.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/InterfaceLanguage.h"

#include <QApplication>
#include <QEnterEvent>
#include <QGridLayout>

#include <array>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using namespace orvesa;

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x29, 0x29, 0x2d));
    palette.setColor(QPalette::WindowText, QColor(0xf2, 0xf2, 0xf4));
    return palette;
}

QPalette lightPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xf7, 0xf7, 0xf9));
    palette.setColor(QPalette::WindowText, QColor(0x1d, 0x1d, 0x1f));
    return palette;
}

/// At rest, under the pointer, with the focus, listening, without a shortcut, with the longest one, disabled.
void paint(const QString &path, const QPalette &palette)
{
    FakeKeyMonitor keys;
    std::array<HotKeyRecordingState, 7> states;
    QWidget window;
    window.setPalette(palette);
    auto *const grid = new QGridLayout(&window);
    grid->setContentsMargins(16, 16, 16, 16);
    std::vector<KeyComboRecorderView *> views;
    for (std::size_t index = 0; index < states.size(); ++index) {
        std::optional<KeyCombo> combo = KeyCombo{2, CarbonModifier::option, u"D"_s};
        if (index == 4) {
            combo.reset();
        } else if (index == 5) {
            combo = KeyCombo{49, 0x1b00, u"Space"_s};
        }
        auto *const view =
            new KeyComboRecorderView({[combo] { return combo; }, [](const KeyCombo &) {}},
                                     Localization::string(L10nKey::noShortcut), {}, {}, states[index], keys, &window);
        grid->addWidget(view, 0, static_cast<int>(index));
        views.push_back(view);
    }
    window.show();
    QApplication::setActiveWindow(&window);
    const auto picture = [&] { return window.grab().toImage(); };
    views[6]->setEnabled(false);
    views[1]->setAttribute(Qt::WA_UnderMouse);
    // Only one control has the focus at a time: its picture is put into the others'.
    views[2]->setFocus();
    const QImage focused = picture();
    views[3]->click();
    QImage all = picture();
    const QRect place = views[2]->geometry();
    const qreal ratio = all.devicePixelRatio();
    for (int y = 0; y < place.height() * ratio; ++y) {
        for (int x = 0; x < place.width() * ratio; ++x) {
            const QPoint point(static_cast<int>(place.x() * ratio) + x, static_cast<int>(place.y() * ratio) + y);
            all.setPixel(point, focused.pixel(point));
        }
    }
    all.save(path);
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    const QString folder = application.arguments().value(1, u"."_s);
    for (const AppLanguage language : allCases<AppLanguage>()) {
        const InterfaceLanguage interfaceLanguage(language);
        const QString name = u"%1/recorder-%2-"_s.arg(folder, rawValue(language));
        paint(name + u"light.png"_s, lightPalette());
        paint(name + u"dark.png"_s, darkPalette());
    }
    return 0;
}
