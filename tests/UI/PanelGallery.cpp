// Draws the result panel in every theme, language, state and appearance into contact sheets, for people to look at.
//
//     QT_QPA_PLATFORM=offscreen [GALLERY_FONT_PIXELS=20] panel-gallery FOLDER
//
// One sheet a scale, language, appearance and theme, and one of texts that are hard to set, small enough to be looked
// at as a whole. The program runs itself for each scale, which Qt reads once at the start. Every panel is also checked:
// a text that is cut off ends the program with 1.

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
#include <array>
#include <numeric>
#include <utility>
#include <vector>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 24;
constexpr int screenHeight = 836;

constexpr int columnCount = 3;

/// Where the pointer and the keyboard are.
enum class Hands { away, keyboardOnRetry, keyboardOnCopy, keyboardOnPicker, pointerOnControls, pressing };
/// Whether a title may end in an ellipsis.
enum class Title { whole, shortened };

struct Sample {
    AITask task;
    QString source = {};
    FloatingResultViewModel::Phase phase = FloatingResultViewModel::Loading{};
    std::optional<QString> status = {};
    Hands hands = Hands::away;
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
        u"HTTP 401: {\"error\":{\"message\":\"Incorrect key\",\"type\":\"invalid_request_error\"}} "_s +
            QString(90, u'x'));
    return {
        {.task = CustomTask{u"Summarize the selected text for a busy reader, please, and quickly"_s, u"x"_s},
         .source = longAnswer(language),
         .phase = Model::Success{longAnswer(language)},
         .title = Title::shortened},
        {.task = PolishTask{PolishMode::businessJapanese}, .source = u"明日の会議、行けません。"_s},
        {.task = TranslateTask{u"Traditional Chinese"_s},
         .source = source,
         .phase =
             Model::Success{u"圖書館九點開門，天色暗下來時關門。📚 謝謝 👩‍👩‍👧"_s},
         .status = Localization::string(L10nKey::statusCopied)},
        {.task = TranslateTask{u"Japanese"_s},
         .phase = Model::Failure{Localization::string(L10nKey::errorNoSelectedText)},
         .hands = Hands::keyboardOnRetry},
        {.task = TranslateTask{u"English"_s}, .source = source, .phase = Model::Failure{failure}},
        {.task = TranslateTask{u"English"_s},
         .source = u"مرحبا بالعالم، كيف حالك اليوم؟\nשלום עולם"_s,
         .phase = Model::Success{u"Hello world, how are you today?\nمرحبا"_s},
         .hands = Hands::keyboardOnPicker},
        {.task = PolishTask{PolishMode::concise},
         .source = u"gimme the report asap"_s,
         .phase = Model::Success{u"Could you please send me the report as soon as possible?"_s},
         .status = Localization::string(L10nKey::statusNothingToRetry),
         .hands = Hands::pointerOnControls},
        {.task = TranslateTask{u"English"_s},
         .source = u"Grüße"_s,
         .phase = Model::Success{u"Greetings"_s},
         .hands = Hands::pressing},
        {.task = TranslateTask{u"Japanese"_s},
         .source = u"ok"_s,
         .phase = Model::Success{u"はい。"_s},
         .hands = Hands::keyboardOnCopy},
    };
}

/// Texts that are hard to set.
std::vector<Sample> hardTexts()
{
    using Model = FloatingResultViewModel;
    const auto answer = [](const QString &source, const QString &result, const QString &language) {
        return Sample{.task = TranslateTask{language}, .source = source, .phase = Model::Success{result}};
    };
    const QString japanese =
        u"直骨令。「こんにちは」、『世界』（二〇二六年）…ーっゃゅょ！？ HTTP/2 の仕様は RFC 9113 で定められています。"_s;
    const QString chinese =
        u"直骨令。「你好」，『世界』（二〇二六年）……──！？這個 HTTP/2 的規格由 RFC 9113 訂定；請參閱說明。"_s;
    return {
        answer(japanese, chinese, u"Traditional Chinese"_s),
        answer(chinese, japanese, u"Japanese"_s),
        answer(u"直骨令"_s, u"直骨令"_s, u"Japanese"_s),
        answer(u"直骨令"_s, u"直骨令"_s, u"Traditional Chinese"_s),
        answer(u"简体中文：图书馆九点开门，直骨令。"_s, u"한국어: 도서관은 아홉 시에 문을 엽니다. 漢字"_s,
               u"English"_s),
        answer(u"?"_s, u"A"_s, u"English"_s),
        answer(
            u"https://example.org/a/very/long/path/without/any/blank?query=abcdefghijklmnopqrstuvwxyz0123456789&more=1"_s,
            u"Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft"_s, u"English"_s),
        answer(u"if (a) {\n\treturn b;\n    }\n"_s, u"for x in y:\n    print(x)\n\tif z:\n\t\tpass\n\n\n"_s,
               u"English"_s),
        answer(u"é ế ệ ñ̃ ก็ नमस्ते Z̸a̴l̵g̶o̷"_s,
               u"👍🏽 ❤️ 🇹🇼 1️⃣ 👩‍👩‍👧 🏳️‍🌈 ☃ ✓ → ⌘⌥"_s,
               u"English"_s),
        answer(u"اقرأ RFC 9113 (HTTP/2) قبل 2026-11-21."_s, u"קרא את RFC 9113 (HTTP/2) לפני 2026-11-21."_s,
               u"English"_s),
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

void place(Hands hands, FloatingResultView &view)
{
    const auto buttons = view.findChildren<SymbolButton *>(); // close, copy, retry
    const auto pickers = view.findChildren<HeaderPicker *>();
    const auto focus = [&view](QWidget *control) {
        QApplication::setActiveWindow(&view);
        control->setFocus(Qt::TabFocusReason);
    };
    switch (hands) {
    case Hands::away:
        break;
    case Hands::keyboardOnRetry:
        focus(buttons.constLast());
        break;
    case Hands::keyboardOnCopy:
        focus(buttons.at(1));
        break;
    case Hands::keyboardOnPicker:
        focus(pickers.constFirst());
        break;
    case Hands::pointerOnControls:
        for (QWidget *control : view.findChildren<QWidget *>()) {
            control->setAttribute(Qt::WA_UnderMouse);
        }
        break;
    case Hands::pressing:
        for (SymbolButton *button : buttons) {
            button->setAttribute(Qt::WA_UnderMouse);
            button->setDown(true);
        }
        break;
    }
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
    place(sample.hands, view);
    QCoreApplication::processEvents();
    cut += cutTexts(view, sample);
    return view.grab();
}

/// The panels in columns, each in the one that is shortest so far.
QPixmap arranged(const std::vector<QPixmap> &panels, const QColor &background)
{
    std::array<int, columnCount> widths{};
    std::array<int, columnCount> heights{};
    std::vector<std::pair<std::size_t, int>> places; // column and top
    for (const QPixmap &panel : panels) {
        const auto shortest = std::ranges::min_element(heights);
        const auto column = static_cast<std::size_t>(shortest - heights.begin());
        const QSize size = panel.deviceIndependentSize().toSize();
        places.emplace_back(column, heights[column] + gap);
        heights[column] += gap + size.height();
        widths[column] = std::max(widths[column], size.width());
    }
    const qreal ratio = panels.front().devicePixelRatio();
    const QSize whole(std::accumulate(widths.begin(), widths.end(), (columnCount + 1) * gap),
                      std::ranges::max(heights) + gap);
    QPixmap picture(whole * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(background);
    QPainter painter(&picture);
    for (std::size_t index = 0; index < panels.size(); ++index) {
        const auto [column, top] = places[index];
        const int left = std::accumulate(widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(column),
                                         (static_cast<int>(column) + 1) * gap);
        painter.drawPixmap(QPoint(left, top), panels[index]);
    }
    return picture;
}

Sheet sheet(const SettingsStore &settings, const std::vector<Sample> &samples, Style::Appearance appearance)
{
    Sheet result;
    std::vector<QPixmap> panels;
    for (const Sample &sample : samples) {
        panels.push_back(drawn(sample, settings, result.cutTexts));
    }
    result.picture =
        arranged(panels, appearance == Style::Appearance::dark ? QColor(0x3a, 0x3d, 0x45) : QColor(0xcf, 0xd3, 0xdc));
    return result;
}

/// Draws one sheet into the folder.
bool draw(const QDir &folder, const SettingsStore &settings, const QString &title, const std::vector<Sample> &samples,
          Style::Appearance appearance)
{
    const QString name = u"panel-%1-%2-%3-%4x.png"_s.arg(rawValue(settings.appLanguage()),
                                                         appearance == Style::Appearance::dark ? u"dark"_s : u"light"_s,
                                                         title, QString::number(qApp->devicePixelRatio()));
    const Sheet drawnSheet = sheet(settings, samples, appearance);
    for (const QString &text : drawnSheet.cutTexts) {
        qCritical("%s: cut off: %s", qUtf8Printable(name), qUtf8Printable(text.left(60)));
    }
    if (!drawnSheet.picture.save(folder.filePath(name))) {
        qCritical("%s could not be written", qUtf8Printable(name));
        return false;
    }
    return drawnSheet.cutTexts.isEmpty();
}

/// Every language, appearance and theme at the scale that the program runs at.
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
            for (const AppTheme theme : allCases<AppTheme>()) {
                settings.setTheme(theme);
                isWhole = draw(folder, settings, rawValue(theme), samples(language), appearance) && isWhole;
            }
            isWhole = draw(folder, settings, u"texts"_s, hardTexts(), appearance) && isWhole;
        }
    }
    return isWhole ? 0 : 1;
}

/// As large a font as the user asks the desktop for.
void useFontOfSize(int pixels)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    QApplication::setFont(font);
}

} // namespace

int main(int argc, char *argv[])
{
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s);
    if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        const QApplication application(argc, argv);
        if (const int pixels = qEnvironmentVariableIntValue("GALLERY_FONT_PIXELS"); pixels > 0) {
            useFontOfSize(pixels);
        }
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
