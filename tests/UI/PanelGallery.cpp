// Draws the result panel in every state, language and appearance into image files, for people to look at.
//
//     QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2 panel-gallery FOLDER

#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/FloatingResultView.h"
#include "UI/Style.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"

#include <QApplication>
#include <QDir>
#include <QPainter>

#include <algorithm>
#include <array>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 24;
constexpr int screenHeight = 836;

struct Sample {
    AITask task;
    QString source;
    FloatingResultViewModel::Phase phase;
    std::optional<QString> status;
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

std::vector<Sample> samples(AppLanguage language)
{
    using Model = FloatingResultViewModel;
    const QString source = sourceText(language);
    const QString paragraph = (source + u' ').repeated(12).trimmed();
    return {
        {TranslateTask{u"Traditional Chinese"_s}, source,
         Model::Success{u"圖書館九點開門，天色暗下來時關門。👩‍👩‍👧"_s},
         Localization::string(L10nKey::statusCopied)},
        {PolishTask{PolishMode::businessJapanese}, u"明日の会議、行けません。"_s, Model::Loading{}, std::nullopt},
        {TranslateTask{u"Japanese"_s},
         {},
         Model::Failure{Localization::string(L10nKey::errorNoSelectedText)},
         std::nullopt},
        {TranslateTask{u"English"_s},
         {},
         Model::Failure{Localization::string(L10nKey::errorAccessibilityPermissionDenied)},
         std::nullopt},
        {TranslateTask{u"English"_s}, source,
         Model::Failure{Localization::format(
             L10nKey::errorAPIRequestFailed,
             u"HTTP 401: {\"error\":{\"message\":\"Incorrect key\",\"type\":\"invalid_request_error\"}} "_s +
                 QString(180, u'x'))},
         std::nullopt},
        {CustomTask{u"Summarize the selected text for a busy reader, please, and quickly"_s, u"x"_s}, paragraph,
         Model::Success{paragraph.repeated(4)}, std::nullopt},
        {TranslateTask{u"English"_s}, u"مرحبا بالعالم\nשלום עולם"_s, Model::Success{u"Hello world\nمرحبا"_s},
         std::nullopt},
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

QPixmap sheet(const SettingsStore &settings, AppLanguage language, Style::Appearance appearance)
{
    std::vector<QPixmap> panels;
    for (const Sample &sample : samples(language)) {
        FloatingResultViewModel model;
        apply(sample, model);
        FloatingResultView view(model, settings);
        view.setAttribute(Qt::WA_TranslucentBackground);
        view.refresh(screenHeight);
        view.resize(view.idealSize());
        panels.push_back(view.grab());
    }
    const qreal ratio = panels.front().devicePixelRatio();
    constexpr int columns = 3;
    std::array<int, columns> heights{};
    for (std::size_t index = 0; index < panels.size(); ++index) {
        heights[index % columns] += qRound(panels[index].deviceIndependentSize().height()) + gap;
    }
    QPixmap result(QSize(columns * (520 + gap) + gap, *std::max_element(heights.begin(), heights.end()) + gap) * ratio);
    result.setDevicePixelRatio(ratio);
    result.fill(appearance == Style::Appearance::dark ? QColor(0x3a, 0x3d, 0x45) : QColor(0xcf, 0xd3, 0xdc));
    QPainter painter(&result);
    heights.fill(gap);
    for (std::size_t index = 0; index < panels.size(); ++index) {
        const auto column = index % columns;
        painter.drawPixmap(QPoint(gap + static_cast<int>(column) * (520 + gap), heights[column]), panels[index]);
        heights[column] += qRound(panels[index].deviceIndependentSize().height()) + gap;
    }
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s);
    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings(defaults, languages);
    for (const Style::Appearance appearance : {Style::Appearance::light, Style::Appearance::dark}) {
        QApplication::setPalette(palette(appearance));
        for (const AppLanguage language : allCases<AppLanguage>()) {
            settings.setAppLanguage(language);
            const QString name = u"panel-%1-%2.png"_s.arg(
                rawValue(language), appearance == Style::Appearance::dark ? u"dark"_s : u"light"_s);
            if (!sheet(settings, language, appearance).save(folder.filePath(name))) {
                qCritical("%s could not be written", qUtf8Printable(name));
                return 1;
            }
        }
    }
    return 0;
}
