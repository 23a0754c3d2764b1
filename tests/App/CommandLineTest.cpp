#include "App/CommandLine.h"

#include "App/OutsideAction.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using namespace CommandLine;

bool isUsageError(const QStringList &arguments)
{
    return std::holds_alternative<UsageError>(parse(arguments));
}

TEST(CommandLine, StartsTheUtilityWithoutArguments)
{
    EXPECT_EQ(parse({}), Request(StartUtility{}));
}

TEST(CommandLine, KnowsItsVersionAndHelp)
{
    EXPECT_EQ(parse({u"--version"_s}), Request(ShowVersion{}));
    EXPECT_EQ(parse({u"--help"_s}), Request(ShowHelp{}));
    EXPECT_EQ(parse({u"translate"_s, u"--help"_s}), Request(ShowHelp{}));
}

TEST(CommandLine, AsksTheRunningInstance)
{
    EXPECT_EQ(parse({u"--perform"_s, u"polishSelection"_s}), Request(Perform{u"polishSelection"_s}));
    EXPECT_TRUE(isUsageError({u"--perform"_s}));
}

TEST(CommandLine, AsksForEveryActionThatTheInstanceKnowsAndForNoOther)
{
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        EXPECT_EQ(parse({u"--perform"_s, rawValue(action)}), Request(Perform{rawValue(action)}));
        EXPECT_EQ(outsideAction(rawValue(action)), OutsideAction(action));
    }
    EXPECT_EQ(parse({u"--perform"_s, u"settings"_s}), Request(Perform{u"settings"_s}));
    EXPECT_EQ(outsideAction(u"settings"_s), OutsideAction(OpenSettings{}));
    EXPECT_EQ(parse({u"--perform"_s, u"prompt:Fix: it"_s}), Request(Perform{u"prompt:Fix: it"_s}));
    EXPECT_EQ(outsideAction(u"prompt:Fix: it"_s), OutsideAction(RunPrompt{u"Fix: it"_s}));
    for (const QString &name : {u""_s, u"translateselection"_s, u" settings"_s, u"Settings"_s, u"prompt"_s,
                                u"prompt:"_s, u"Prompt:Fix"_s, u"nothing"_s}) {
        EXPECT_EQ(outsideAction(name), std::nullopt) << name.toStdString();
        EXPECT_EQ(parse({u"--perform"_s, name}),
                  Request(UsageError{u"--perform takes one of: translateSelection, polishSelection, ocrTranslate, "
                                     u"settings, prompt:NAME-OR-ID"_s}))
            << name.toStdString();
    }
}

TEST(CommandLine, TranslatesWithEveryOption)
{
    const Request request = parse({u"translate"_s, u"--to"_s, u"Korean"_s, u"--provider"_s, u"openAI"_s, u"--model"_s,
                                   u"m"_s, u"--thinking"_s, u"on"_s, u"Hello"_s, u"world"_s});
    EXPECT_EQ(request,
              Request(Translate{u"Korean"_s, {AIProviderType::openAI, u"m"_s, true}, {u"Hello"_s, u"world"_s}}));
    EXPECT_EQ(parse({u"translate"_s}), Request(Translate{std::nullopt, {}, {std::nullopt}}));
}

TEST(CommandLine, TakesOptionsBeforeAndAfterTheText)
{
    EXPECT_EQ(parse({u"translate"_s, u"Hello"_s, u"--to=Japanese"_s}),
              Request(Translate{u"Japanese"_s, {}, {u"Hello"_s}}));
    EXPECT_EQ(parse({u"translate"_s, u"--"_s, u"--to"_s}), Request(Translate{std::nullopt, {}, {u"--to"_s}}));
}

TEST(CommandLine, ADashStandsForStandardInputUnlessItIsMeantAsItStands)
{
    EXPECT_EQ(parse({u"translate"_s, u"-"_s}), Request(Translate{std::nullopt, {}, {std::nullopt}}));
    EXPECT_EQ(parse({u"translate"_s, u"a"_s, u"-"_s, u"--"_s, u"-"_s, u"--"_s}),
              Request(Translate{std::nullopt, {}, {u"a"_s, std::nullopt, u"-"_s, u"--"_s}}));
    EXPECT_EQ(parse({u"prompt"_s, u"--"_s, u"-"_s, u"-"_s}), Request(Prompt{u"-"_s, {}, {u"-"_s}}));
    EXPECT_EQ(parse({u"prompt"_s, u"Summarize"_s}), Request(Prompt{u"Summarize"_s, {}, {std::nullopt}}));
}

TEST(CommandLine, Polishes)
{
    EXPECT_EQ(parse({u"polish"_s, u"--mode"_s, u"concise"_s, u"text"_s}),
              Request(Polish{PolishMode::concise, {}, {u"text"_s}}));
}

TEST(CommandLine, RunsASavedPrompt)
{
    EXPECT_EQ(parse({u"prompt"_s, u"Summarize"_s, u"text"_s}), Request(Prompt{u"Summarize"_s, {}, {u"text"_s}}));
    EXPECT_TRUE(isUsageError({u"prompt"_s}));
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    EXPECT_TRUE(isUsageError({u"sing"_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--provider"_s, u"OpenAI"_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--thinking"_s, u"maybe"_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--mode"_s, u"concise"_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--to"_s, u" "_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--model"_s, u""_s}));
    EXPECT_TRUE(isUsageError({u"translate"_s, u"--unknown"_s}));
    EXPECT_TRUE(isUsageError({u"polish"_s, u"--mode"_s, u"Concise"_s}));
    EXPECT_TRUE(isUsageError({u"polish"_s, u"--to"_s, u"English"_s}));
    EXPECT_TRUE(isUsageError({u"--provider"_s, u"openAI"_s}));
}

TEST(CommandLine, ListsItsRawValuesInTheHelp)
{
    EXPECT_TRUE(helpText().contains(u"openAI, gemini, anthropic, xAI"_s));
    EXPECT_TRUE(
        helpText().contains(u"translateSelection, polishSelection, ocrTranslate, settings, prompt:NAME-OR-ID"_s));
    EXPECT_TRUE(helpText().contains(u"businessJapanese, naturalJapanese, traditionalChinese, concise"_s));
}

} // namespace
} // namespace orvesa
