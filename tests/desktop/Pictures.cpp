#include "desktop/Pictures.h"

#include "Core/Localization.h"
#include "Models/TargetLanguage.h"
#include "desktop/TextEditor.h"
#include "desktop/TranslateProgram.h"
#include "service/LoopbackService.h"
#include "service/ServiceAnswers.h"

#include <QTimer>
#include <QUuid>

#include <utility>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds betweenLooks{20};
constexpr std::chrono::milliseconds untilStill{300};
constexpr int margin = 28;

struct Scene {
    QString source;
    TargetLanguage target;
    QString answer;
    QString locale;
};

Scene sceneFor(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return {u"The library opens at nine and closes when the light goes. Please put the books back where you "
                u"found them."_s,
                TargetLanguage::traditionalChinese, u"圖書館九點開門，天色暗下來時關門。請將書籍放回原處。"_s,
                u"zh_TW.UTF-8"_s};
    case AppLanguage::japanese:
        return {u"The library opens at nine and closes when the light goes. Please put the books back where you "
                u"found them."_s,
                TargetLanguage::japanese,
                u"図書館は九時に開き、日が暮れると閉まります。本は元の場所にお戻しください。"_s, u"ja_JP.UTF-8"_s};
    case AppLanguage::english:
        break;
    }
    return {u"図書館は九時に開き、日が暮れると閉まります。本は元の場所にお戻しください。"_s, TargetLanguage::english,
            u"The library opens at nine and closes when the light goes. Please put the books back where you found "
            u"them."_s,
            u"en_US.UTF-8"_s};
}

} // namespace

Pictures::Pictures(QString program, const QString &folder) : m_program(std::move(program)), m_folder(folder) {}

void Pictures::take(AppLanguage language)
{
    Localization::setCurrent(language);
    const Scene scene = sceneFor(language);
    DesktopOptions options;
    options.screenSize = {1280, 860};
    options.windowManager = WindowManager::xfwm4;
    Desktop desktop(options);
    service::LoopbackService service;
    service.setScript({service::ServiceResponse::json(service::chatCompletionAnswer(scene.answer))});
    TranslateProgram program(desktop, m_program);
    program.setService(service.address());
    program.setPreference(u"settings.appLanguage"_s, rawValue(language));
    program.setPreference(u"settings.targetLanguage"_s, rawValue(scene.target));
    program.storeKey(QUuid::createUuid().toByteArray(QUuid::WithoutBraces));
    program.start();
    takePanel(desktop, program, language);

    // A second start opens the window of the first.
    if (program.run({}).exitCode != 0)
        throw DesktopError(u"the settings window could not be asked for"_s);
    takePage(desktop, program, L10nKey::sectionProviders, path(u"providers"_s, language));
    takePage(desktop, program, L10nKey::sectionShortcuts, path(u"shortcuts"_s, language));
}

void Pictures::takePanel(Desktop &desktop, TranslateProgram &program, AppLanguage language)
{
    const Scene scene = sceneFor(language);
    TextEditor editor(desktop, scene.source);
    if (!editor.choose(u"Word Wrap"_s))
        throw DesktopError(u"the editor does not wrap its lines"_s);
    const QRect place(120, 110, 660, 440);
    desktop.windows().moveResize(editor.window(), place);
    waitUntil([&] { return desktop.windows().geometry(editor.window()).size() == place.size(); },
              u"the editor to have its size"_s);
    editor.selectAll();
    desktop.pointer().moveTo(place.topLeft() + QPoint(250, 150));
    desktop.keyboard().press(u"Alt+d"_s);
    const xcb_window_t panel = program.awaitPanel();
    static_cast<void>(awaitShowing(desktop, program, scene.answer));
    awaitStill(desktop, panel);
    // A close look: the editor's text, and what is around the panel. Above the text editors have bars of all kinds.
    const QRect around = desktop.windows().geometry(panel).adjusted(0, 0, margin, margin);
    const QRect text = editor.content().extents().intersected(desktop.windows().geometry(editor.window()));
    const QRect area = text.united(around);
    if (!desktop.windows().picture(area).save(path(u"panel"_s, language)))
        throw DesktopError(u"the picture cannot be saved"_s);
    desktop.keyboard().press(u"Escape"_s);
    editor.process().terminate();
    desktop.windows().awaitNoWindow({.pid = editor.process().pid()});
}

void Pictures::takePage(Desktop &desktop, TranslateProgram &program, L10nKey section, const QString &name)
{
    const xcb_window_t window =
        desktop.windows().awaitWindow({.pid = program.process().pid(), .title = u"Orvesa Translate Settings"_s});
    desktop.windows().awaitActive(window);
    const Accessible entry = awaitShowing(desktop, program, Localization::string(section));
    desktop.pointer().clickAt(entry.extents().center());
    const L10nKey subtitle =
        section == L10nKey::sectionProviders ? L10nKey::sectionProvidersSubtitle : L10nKey::sectionShortcutsSubtitle;
    static_cast<void>(awaitShowing(desktop, program, Localization::string(subtitle)));
    awaitStill(desktop, window);
    const QRect area = desktop.windows().frameGeometry(window).adjusted(-margin, -margin, margin, margin);
    if (!desktop.windows().picture(area).save(name))
        throw DesktopError(u"the picture cannot be saved"_s);
}

Accessible Pictures::awaitShowing(Desktop &desktop, TranslateProgram &program, const QString &text) const
{
    QTimer look; // not every change of a state is told on the accessibility bus
    look.start(betweenLooks);
    Accessible found;
    const auto isThere = [&] {
        found = desktop.accessibles().application(program.process().pid()).find([&](const Accessible &element) {
            return element.readable() == text && element.has(AccessibleState::showing);
        });
        return !found.isNull();
    };
    waitUntil(isThere, u"'%1' to show"_s.arg(text));
    return found;
}

void Pictures::awaitStill(Desktop &desktop, xcb_window_t window) const
{
    // The text is there before all of it is painted, and nobody tells when that is done.
    // Looks are taken at the timer's pace alone: two in a row of other events would be the same too soon.
    QTimer look;
    QImage before;
    bool isStill = false;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        const QImage now = desktop.windows().picture(desktop.windows().geometry(window));
        isStill = std::exchange(before, now) == now;
    });
    look.start(untilStill);
    waitUntil([&] { return isStill; }, u"the window to be painted"_s);
}

QString Pictures::path(const QString &name, AppLanguage language) const
{
    return m_folder.filePath(name + u'-' + rawValue(language) + u".png"_s);
}

} // namespace orvesa::desktop
