// Draws the settings window's pages in every language and appearance into image files, for people to look at.
//
//     QT_QPA_PLATFORM=offscreen [GALLERY_FONT_PIXELS=20] settings-gallery FOLDER [SCALE...]
//
// draws for each scale, 1 and 2 without one.

#include "App/Settings/PromptsSettingsView.h"
#include "App/Settings/ProviderSettingsSection.h"
#include "App/Settings/SettingsSidebar.h"
#include "App/Settings/SettingsView.h"
#include "App/Settings/SidebarItem.h"
#include "App/SettingsFixture.h"
#include "Core/Localization.h"
#include "UI/HotKeyRecorderView.h"
#include "UI/StatusLabel.h"
#include "UI/Style.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>

#include <functional>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 20;
constexpr int columns = 3;

using Arrange = std::function<void(SettingsOnFakes &, SettingsView &)>;

struct Sample {
    SettingsSection section;
    AppTheme theme;
    std::function<void(SettingsOnFakes &)> prepare;
    Arrange arrange;
};

/// Layouts inside layouts tell each other of their sizes through the event loop.
void settle()
{
    constexpr int levels = 10;
    for (int level = 0; level < levels; ++level) {
        QCoreApplication::processEvents();
    }
}

void scrollToEnd(SettingsView &view)
{
    QScrollBar *bar = view.findChild<QScrollArea *>()->verticalScrollBar();
    bar->setValue(bar->maximum());
}

void store(SettingsOnFakes &with, AIProviderType type)
{
    with.keyStore.setItem(u"current"_s, keychainAccount(type), "secret");
}

std::vector<ProviderSettingsSection *> sections(const SettingsView &view)
{
    const auto found = view.findChildren<ProviderSettingsSection *>();
    return {found.begin(), found.end()};
}

void storePrompts(SettingsOnFakes &with)
{
    with.settings.setCustomPrompts(
        {SettingsOnFakes::prompt(
             u"Summarize"_s,
             u"Summarize the following text in three bullet points, in the language it is written in."_s,
             KeyCombo{1, CarbonModifier::control | CarbonModifier::option, u"S"_s}),
         SettingsOnFakes::prompt(u"  "_s, u"Explain {text} to a ten-year-old."_s),
         SettingsOnFakes::prompt(u"敬語で返信を書く"_s, u"次のメールに、丁寧な敬語で返信を書いてください。\n{text}"_s,
                                 KeyCombo{96, 0, u"F5"_s}),
         SettingsOnFakes::prompt(
             u"A prompt whose name is far too long for any row of any list "_s.repeated(150), u"word "_s.repeated(4000),
             KeyCombo{
                 1, CarbonModifier::control | CarbonModifier::option | CarbonModifier::shift | CarbonModifier::command,
                 u"Space"_s})});
}

/// A key that was saved, and another that its service refuses at length.
void saveOneKeyAndHaveTheNextRefused(SettingsOnFakes &with, SettingsView &view)
{
    sections(view)[2]->model().setAPIKeyInput(u"typed"_s);
    sections(view)[2]->model().saveKey();
    with.providers.setRefusal(
        uR"(HTTP 401: {"error":{"message":"Incorrect API key provided","type":"invalid_request_error"}} )"_s +
        QString(120, u'x'));
    sections(view)[3]->model().setModelInput(u"grok-4"_s);
    sections(view)[3]->model().setAPIKeyInput(u"typed"_s);
    sections(view)[3]->model().testKey();
    settle();
    scrollToEnd(view);
}

std::vector<Sample> samples()
{
    const auto nothing = [](SettingsOnFakes &) {};
    const auto asItIs = [](SettingsOnFakes &, SettingsView &) {};
    return {
        {SettingsSection::general, AppTheme::violet, nothing, asItIs},
        {SettingsSection::general, AppTheme::forest,
         [](SettingsOnFakes &with) {
             store(with, AIProviderType::gemini);
             with.settings.setThinkingEnabled(true);
             with.trust.setTrust(FakeAccessibilityTrust::Trust::missing);
         },
         [](SettingsOnFakes &, SettingsView &view) { scrollToEnd(view); }},
        {SettingsSection::shortcuts, AppTheme::violet, [](SettingsOnFakes &with) { store(with, AIProviderType::xAI); },
         asItIs},
        {SettingsSection::shortcuts, AppTheme::sunset,
         [](SettingsOnFakes &with) {
             store(with, AIProviderType::xAI);
             with.settings.setCombo({17, CarbonModifier::command | CarbonModifier::shift, u"T"_s},
                                    HotKeyAction::translateSelection);
         },
         [](SettingsOnFakes &with, SettingsView &view) {
             view.findChildren<HotKeyRecorderView *>().at(1)->click();
             with.keyMonitor.press(0, FakeKeyMonitor::option, u"a"_s);
         }},
        {SettingsSection::providers, AppTheme::violet,
         [](SettingsOnFakes &with) { store(with, AIProviderType::openAI); },
         [](SettingsOnFakes &with, SettingsView &view) {
             sections(view)[0]->model().testKey();
             with.providers.gate().close();
             sections(view)[1]->model().setAPIKeyInput(u"typed"_s);
             sections(view)[1]->model().testKey();
         }},
        {SettingsSection::providers, AppTheme::graphite, nothing, saveOneKeyAndHaveTheNextRefused},
        {SettingsSection::prompts, AppTheme::ocean,
         [](SettingsOnFakes &with) {
             store(with, AIProviderType::xAI);
             storePrompts(with);
         },
         asItIs},
        {SettingsSection::prompts, AppTheme::violet, nothing, asItIs},
        {SettingsSection::prompts, AppTheme::forest,
         [](SettingsOnFakes &with) {
             store(with, AIProviderType::xAI);
             storePrompts(with);
         },
         [](SettingsOnFakes &with, SettingsView &view) {
             view.findChild<PromptsSettingsView *>()->model().edit(with.settings.customPrompts().front().id);
             view.findChild<KeyComboRecorderView *>()->click();
             with.keyMonitor.press(0, FakeKeyMonitor::option, u"a"_s);
         }},
    };
}

QPixmap picture(const Sample &sample, AppLanguage language)
{
    SettingsOnFakes with;
    with.settings.setAppLanguage(language);
    with.settings.setTheme(sample.theme);
    sample.prepare(with);
    ProviderKeyStatus keyStatus(with.keychain);
    SettingsView view(with.services(), keyStatus);
    view.setSelection(sample.section);
    view.show();
    settle();
    sample.arrange(with, view);
    settle();
    return view.grab();
}

QPixmap sheet(AppLanguage language, Style::Appearance appearance)
{
    std::vector<QPixmap> pictures;
    for (const Sample &sample : samples()) {
        pictures.push_back(picture(sample, language));
    }
    const qreal ratio = pictures.front().devicePixelRatio();
    const int rows = (static_cast<int>(pictures.size()) + columns - 1) / columns;
    QPixmap result(
        QSize(columns * (SettingsView::viewWidth + gap) + gap, rows * (SettingsView::viewHeight + gap) + gap) * ratio);
    result.setDevicePixelRatio(ratio);
    result.fill(appearance == Style::Appearance::dark ? QColor(0x3a, 0x3d, 0x45) : QColor(0xcf, 0xd3, 0xdc));
    QPainter painter(&result);
    for (int index = 0; index < static_cast<int>(pictures.size()); ++index) {
        painter.drawPixmap(QPoint(gap + index % columns * (SettingsView::viewWidth + gap),
                                  gap + index / columns * (SettingsView::viewHeight + gap)),
                           pictures[static_cast<std::size_t>(index)]);
    }
    return result;
}

bool draw(const QDir &folder)
{
    for (const Style::Appearance appearance : {Style::Appearance::light, Style::Appearance::dark}) {
        const bool isDark = appearance == Style::Appearance::dark;
        QApplication::setPalette(QPalette(isDark ? QColor(0x2b, 0x2b, 0x2e) : QColor(0xef, 0xef, 0xef)));
        for (const AppLanguage language : allCases<AppLanguage>()) {
            const QString name = u"settings-%1-%2-%3x.png"_s.arg(rawValue(language), isDark ? u"dark"_s : u"light"_s)
                                     .arg(qGuiApp->devicePixelRatio());
            if (!sheet(language, appearance).save(folder.filePath(name))) {
                qCritical("%s could not be written", qUtf8Printable(name));
                return false;
            }
        }
    }
    return true;
}

/// The scale is fixed when a program starts: each one has a process of its own.
bool drawScaled(const QString &folder, const QString &scale)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_SCALE_FACTOR"_s, scale);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), {folder});
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = arguments.value(1, u"."_s);
    if (const int pixels = qEnvironmentVariableIntValue("GALLERY_FONT_PIXELS"); pixels > 0) {
        QFont font = QApplication::font();
        font.setPixelSize(pixels); // as large as the user asks the desktop for
        QApplication::setFont(font);
    }
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        return draw(QDir(folder)) ? 0 : 1;
    }
    const QStringList scales = arguments.size() > 2 ? arguments.mid(2) : QStringList{u"1"_s, u"2"_s};
    for (const QString &scale : scales) {
        if (!drawScaled(folder, scale)) {
            return 1;
        }
    }
    return 0;
}
