#include "AI/PromptTemplateService.h"

#include <QtGlobal>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr auto languageMarker = "{targetLanguage}"_L1;
constexpr auto textMarker = "{text}"_L1;

[[nodiscard]] QString translateTemplate()
{
    return u"You are a professional translator.\n"
           u"Translate the following text into {targetLanguage}.\n"
           u"Preserve the original meaning, tone, formatting, line breaks, and terminology.\n"
           u"Return only the translated text. Do not add explanations.\n"
           u"\n"
           u"Text:\n"
           u"{text}"_s;
}

/// The language of these is part of the mode and does not follow the interface. The labels' colons differ on purpose.
[[nodiscard]] QString polishTemplate(PolishMode mode)
{
    switch (mode) {
    case PolishMode::concise:
        return u"Please rewrite the following text to be clearer and more concise without changing its meaning.\n"
               u"Return only the rewritten text. Do not add explanations.\n"
               u"\n"
               u"Text:\n"
               u"{text}"_s;
    case PolishMode::traditionalChinese:
        return u"你是一位繁體中文編輯。\n"
               u"請在不改變原意的前提下，將以下文字修正成自然、清楚、好讀的繁體中文。\n"
               u"請只輸出修正後的文字，不要加解釋。\n"
               u"\n"
               u"文字：\n"
               u"{text}"_s;
    case PolishMode::naturalJapanese:
        return u"あなたは日本語ネイティブの編集者です。\n"
               u"以下の文章を、意味を変えずに、自然で読みやすい日本語に修正してください。\n"
               u"返答は修正後の文章のみ出力してください。説明は不要です。\n"
               u"\n"
               u"文章:\n"
               u"{text}"_s;
    case PolishMode::businessJapanese:
        return u"あなたは日本語のビジネス文章を自然で丁寧に整えるアシスタントです。\n"
               u"以下の文章を、意味を変えずに、自然で失礼のないビジネス日本語に修正してください。\n"
               u"必要以上に硬くしすぎず、実務でそのまま送れる表現にしてください。\n"
               u"返答は修正後の文章のみ出力してください。説明は不要です。\n"
               u"\n"
               u"文章:\n"
               u"{text}"_s;
    }
    Q_UNREACHABLE();
}

struct PromptBuilder {
    const QString &text;

    [[nodiscard]] QString operator()(const TranslateTask &task) const
    {
        return translateTemplate().replace(languageMarker, task.targetLanguage).replace(textMarker, text);
    }

    [[nodiscard]] QString operator()(const PolishTask &task) const
    {
        return polishTemplate(task.mode).replace(textMarker, text);
    }

    [[nodiscard]] QString operator()(const CustomTask &task) const
    {
        if (task.promptTemplate.contains(textMarker)) {
            return QString(task.promptTemplate).replace(textMarker, text);
        }
        return task.promptTemplate + u"\n\n"_s + text;
    }
};

} // namespace

QString PromptTemplateService::prompt(const AITask &task, const QString &text) const
{
    return std::visit(PromptBuilder{text}, task);
}

} // namespace orvesa
