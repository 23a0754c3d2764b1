// Draws the result panel in every theme, language, state and appearance into contact sheets, for people to look at.
//
//     QT_QPA_PLATFORM=offscreen panel-gallery FOLDER
//
// One sheet a scale, language and appearance, the themes below one another. The program runs itself for each scale,
// which Qt reads once at the start. Every panel is also checked: a text that is cut off ends the program with 1.

#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/AdaptiveTextScrollView.h"
#include "UI/FloatingResultView.h"
#include "UI/HeaderPicker.h"
#include "UI/PanelTitle.h"
#include "UI/Style.h"
#include "UI/SymbolButton.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QProcessEnvironment>

#include <algorithm>
#include <vector>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 24;
constexpr int screenHeight = 836;

enum class Focus { none, retry };
/// Whether a title may end in an ellipsis.
enum class Title { whole, shortened };

struct Sample {
    AITask task;
    QString source = {};
    FloatingResultViewModel::Phase phase = FloatingResultViewModel::Loading{};
    std::optional<QString> status = {};
    Focus focus = Focus::none;
    Title title = Title::whole;
};

QString sourceText(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return u"圖書館九點開門，天色暗下來時關門。請把書放回原處，謝謝您的合作。"_s;
    case AppLanguage::japanese:
        return u"図書館は九時に開き、日が暮れると閉まります。本は元の場所にお戻しください。"_s;
    case AppLanguage::english:
        break;
    }
    return u"The library opens at nine and closes when the light goes."_s;
}

QString longAnswer(AppLanguage language)
{
    const QString blank = language == AppLanguage::english ? u" "_s : QString();
    return (sourceText(language) + blank).repeated(28).trimmed();
}

/// The states that the panel can be in, the longest texts among them.
std::vector<Sample> samples(AppLanguage language)
{
    using Model = FloatingResultViewModel;
    const QString source = sourceText(language);
    const QString failure = Localization::format(
        L10nKey::errorAPIRequestFailed,
        u"HTTP 401: {\"error\":{\"message\":\"Incorrect key\",\"type\":\"invalid_request_error\"}} "_s + QString(90, u'x'));
    return {
        {.task = PolishTask{PolishMode::businessJapanese}, .source = u"明日の会議、行けません。"_s},
        {.task = TranslateTask{u"Traditional Chinese"_s},
         .source = source,
         .phase = Model::Success{u"圖書館九點開門，天色暗下來時關門。📚 謝謝 👩‍👩‍👧"_s},
         .status = Localization::string(L10nKey::statusCopied)},
        {.task = TranslateTask{u"Japanese"_s},
         .phase = Model::Failure{Localization::string(L10nKey::errorNoSelectedText)},
         .focus = Focus::retry},
        {.task = TranslateTask{u"English"_s}, .source = source, .phase = Model::Failure{failure}},
        {.task = TranslateTask{u"English"_s},
         .source = u"مرحبا بالعالم، كيف حالك اليوم؟\nשלום עולם"_s,
         .phase = Model::Success{u"Hello world, how are you today?\nمرحبا"_s}},
        {.task = CustomTask{u"Summarize the selected text for a busy reader, please, and quickly"_s, u"x"_s},
         .source = longAnswer(language),
         .phase = Model::Success{longAnswer(language)},
         .title = Title::shortened},
    };
}

void apply(const Sample &sample, FloatingResultViewModel &model)
{
    model.setTaskTitle(displayName(sample.task));
    model.setSourceText(sample.source);
    model.setPhase(sample.phase);
    model.setStatusMessage(sample.status);
    const auto *translate = std::get_if<TranslateTask>(&sample.task);
    const auto *polish = std::get_if<PolishTask>(&sample.task);
    model.setTranslationLanguage(translate != nullptr && !sample.source.isEmpty()
                                     ? fromRawValue<TargetLanguage>(translate->targetLanguage)
                                     : std::nullopt);
    model.setPolishMode(polish != nullptr ? std::optional(polish->mode) : std::nullopt);
}

QPalette palette(Style::Appearance appearance)
{
    return appearance == Style::Appearance::dark ? QPalette(QColor(0x2b, 0x2b, 0x2e))
                                                 : QPalette(QColor(0xef, 0xef, 0xef));
}

/// What is cut off in the panel: texts must have the room that they ask for.
QStringList cutTexts(const FloatingResultView &view, const Sample &sample)
{
    QStringList cut;
    for (const QLabel *label : view.findChildren<QLabel *>()) {
        const bool wraps = label->wordWrap();
        const int needed = wraps ? label->heightForWidth(label->width()) : label->sizeHint().height();
        if (label->isVisibleTo(&view) && !label->text().isEmpty() &&
            (label->height() < needed || (!wraps && label->width() < label->sizeHint().width()))) {
            cut.append(label->text());
        }
    }
    for (const HeaderPicker *picker : view.findChildren<HeaderPicker *>()) {
        if (picker->isVisibleTo(&view) && picker->width() < picker->sizeHint().width()) {
            cut.append(picker->currentText());
        }
    }
    for (const PanelTitle *title : view.findChildren<PanelTitle *>()) {
        if (sample.title == Title::whole && title->isShortened()) {
            cut.append(title->accessibleName());
        }
    }
    for (const AdaptiveTextScrollView *text : view.findChildren<AdaptiveTextScrollView *>()) {
        if (text->isVisibleTo(&view) && text->document()->size().height() > text->height() &&
            text->verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOff) {
            cut.append(text->content());
        }
    }
    return cut;
}

struct Sheet {
    QPixmap picture;
    QStringList cutTexts;
};

QPixmap drawn(const Sample &sample, const SettingsStore &settings, QStringList &cut)
{
    FloatingResultViewModel model;
    apply(sample, model);
    FloatingResultView view(model, settings);
    view.setAttribute(Qt::WA_TranslucentBackground);
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.refresh(screenHeight);
    view.resize(view.idealSize());
    view.show();
    if (sample.focus == Focus::retry) {
        QApplication::setActiveWindow(&view);
        view.findChildren<SymbolButton *>().constLast()->setFocus(Qt::TabFocusReason);
    }
    QCoreApplication::processEvents();
    cut += cutTexts(view, sample);
    return view.grab();
}

Sheet sheet(SettingsStore &settings, AppLanguage language, Style::Appearance appearance)
{
    Sheet result;
    std::vector<std::vector<QPixmap>> rows;
    QSize size(0, gap);
    for (const AppTheme theme : allCases<AppTheme>()) {
        settings.setTheme(theme);
        auto &row = rows.emplace_back();
        QSize rowSize(gap, 0);
        for (const Sample &sample : samples(language)) {
            row.push_back(drawn(sample, settings, result.cutTexts));
            const QSize panel = row.back().deviceIndependentSize().toSize();
            rowSize = QSize(rowSize.width() + panel.width() + gap, std::max(rowSize.height(), panel.height() + gap));
        }
        size = QSize(std::max(size.width(), rowSize.width()), size.height() + rowSize.height());
    }
    const qreal ratio = rows.front().front().devicePixelRatio();
    result.picture = QPixmap(size * ratio);
    result.picture.setDevicePixelRatio(ratio);
    result.picture.fill(appearance == Style::Appearance::dark ? QColor(0x3a, 0x3d, 0x45) : QColor(0xcf, 0xd3, 0xdc));
    QPainter painter(&result.picture);
    int top = gap;
    for (const auto &row : rows) {
        int left = gap;
        int height = 0;
        for (const QPixmap &panel : row) {
            painter.drawPixmap(QPoint(left, top), panel);
            left += panel.deviceIndependentSize().toSize().width() + gap;
            height = std::max(height, panel.deviceIndependentSize().toSize().height());
        }
        top += height + gap;
    }
    return result;
}

/// Every language and appearance at the scale that the program runs at.
int drawSheets(const QDir &folder)
{
    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings(defaults, languages);
    bool isWhole = true;
    for (const Style::Appearance appearance : {Style::Appearance::light, Style::Appearance::dark}) {
        QApplication::setPalette(palette(appearance));
        for (const AppLanguage language : allCases<AppLanguage>()) {
            settings.setAppLanguage(language);
            const QString name = u"panel-%1-%2-%3x.png"_s.arg(
                rawValue(language), appearance == Style::Appearance::dark ? u"dark"_s : u"light"_s,
                QString::number(qApp->devicePixelRatio()));
            const Sheet drawnSheet = sheet(settings, language, appearance);
            for (const QString &text : drawnSheet.cutTexts) {
                isWhole = false;
                qCritical("%s: cut off: %s", qUtf8Printable(name), qUtf8Printable(text.left(60)));
            }
            if (!drawnSheet.picture.save(folder.filePath(name))) {
                qCritical("%s could not be written", qUtf8Printable(name));
                return 1;
            }
        }
    }
    return isWhole ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s);
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        const QApplication application(argc, argv);
        return drawSheets(folder);
    }
    int worst = 0;
    for (const char *scale : {"1", "1.5", "2"}) {
        QProcess self;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_SCALE_FACTOR"_s, QString::fromLatin1(scale));
        self.setProcessEnvironment(environment);
        self.setProcessChannelMode(QProcess::ForwardedChannels);
        self.start(QString::fromLocal8Bit(argv[0]), {folder.path()});
        self.waitForFinished(-1);
        worst = std::max(worst, self.exitStatus() == QProcess::NormalExit ? self.exitCode() : 1);
    }
    return worst;
}
