#include "desktop/PanelFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

void PanelFixture::showAnswer(const DesktopOptions &options, const QString &selected)
{
    setUp(options);
    service.setResponder([](const service::ServiceRequest &) { return answer(u"The house is big."_s); });
    startOver(selected);
    desktop->pointer().moveTo(QPoint(400, 300));
    pressTranslate();
    awaitResultWith(u"house"_s);
    const auto find = [this] {
        for (const xcb_window_t window : desktop->windows().mapped({.pid = program->process().pid()})) {
            if (desktop->windows().title(window).startsWith(u"Translate"_s)) {
                panel = window;
            }
        }
        return panel != 0;
    };
    waitUntil(find, u"the panel's window"_s);
}

void PanelFixture::showAgain()
{
    desktop->windows().focus(editor->window());
    editor->selectAll();
    desktop->pointer().moveTo(QPoint(400, 300));
    pressTranslate();
    waitUntil([this] { return isShown(); }, u"the panel"_s);
    awaitResultWith(u"house"_s);
}

Accessible PanelFixture::control(const QString &name) const
{
    const Accessible found = program->panel().find([&](const Accessible &accessible) {
        return accessible.name() == name && accessible.has(AccessibleState::showing) && accessible.role() != u"label"_s;
    });
    EXPECT_TRUE(found) << name.toStdString() << " in\n" << program->panel().dump().toStdString();
    return found;
}

bool PanelFixture::staysShown() const
{
    processEventsFor(std::chrono::milliseconds(200));
    return isShown();
}

void PanelFixture::awaitHidden() const
{
    waitUntil([this] { return !isShown(); }, u"the panel to go"_s);
}

QString PanelFixture::focusedControl() const
{
    return program->panel()
        .find([](const Accessible &accessible) { return accessible.has(AccessibleState::focused); })
        .name();
}

} // namespace orvesa::desktop
