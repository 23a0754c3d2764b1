// What the program itself sends, started from its command line: compared byte by byte, and judged by a validator of
// JSON Schemas that is not ours. The schemas are written after the services' public references.

#include "desktop/Desktop.h"
#include "desktop/TranslateProgram.h"
#include "service/LoopbackProxy.h"
#include "service/LoopbackService.h"
#include "service/ServiceAnswers.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <memory>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

using service::LoopbackProxy;
using service::LoopbackService;
using service::ServiceRequest;

struct Case {
    const char *provider;
    const char *model;
    const char *thinking;
    const char *account;
    const char *target;
    const char *keyHeader;
    const char *beforePrompt;
    const char *afterPrompt;
};

constexpr auto chatEnd = R"("}]})";
constexpr std::array<Case, 10> cases{{
    {"openAI", "gpt-5.4-mini", "off", "openai_api_key", "/v1/chat/completions", "Authorization",
     R"({"model":"gpt-5.4-mini","messages":[{"role":"user","content":")", chatEnd},
    {"openAI", "gpt-5.4-mini", "on", "openai_api_key", "/v1/chat/completions", "Authorization",
     R"({"model":"gpt-5.4-mini","messages":[{"role":"user","content":")", chatEnd},
    {"xAI", "grok-4.3", "off", "xai_api_key", "/v1/chat/completions", "Authorization",
     R"({"model":"grok-4.3","messages":[{"role":"user","content":")", chatEnd},
    {"xAI", "grok-4.3", "on", "xai_api_key", "/v1/chat/completions", "Authorization",
     R"({"model":"grok-4.3","messages":[{"role":"user","content":")", chatEnd},
    {"anthropic", "claude-sonnet-5", "off", "anthropic_api_key", "/v1/messages", "x-api-key",
     R"({"model":"claude-sonnet-5","max_tokens":8192,"messages":[{"role":"user","content":")",
     R"("}],"thinking":{"type":"disabled"}})"},
    {"anthropic", "claude-sonnet-5", "on", "anthropic_api_key", "/v1/messages", "x-api-key",
     R"({"model":"claude-sonnet-5","max_tokens":8192,"messages":[{"role":"user","content":")",
     R"("}],"thinking":{"type":"adaptive"}})"},
    {"gemini", "gemini-3.1-flash-lite", "off", "gemini_api_key", "/v1beta/models/gemini-3.1-flash-lite:generateContent",
     "x-goog-api-key", R"({"contents":[{"parts":[{"text":")",
     R"("}]}],"generationConfig":{"thinkingConfig":{"thinkingLevel":"minimal"}}})"},
    {"gemini", "gemini-3.1-flash-lite", "on", "gemini_api_key", "/v1beta/models/gemini-3.1-flash-lite:generateContent",
     "x-goog-api-key", R"({"contents":[{"parts":[{"text":")",
     R"("}]}],"generationConfig":{"thinkingConfig":{"thinkingLevel":"high"}}})"},
    {"gemini", "gemini-2.5-flash", "off", "gemini_api_key", "/v1beta/models/gemini-2.5-flash:generateContent",
     "x-goog-api-key", R"({"contents":[{"parts":[{"text":")",
     R"("}]}],"generationConfig":{"thinkingConfig":{"thinkingBudget":0}}})"},
    {"gemini", "gemini-2.5-flash", "on", "gemini_api_key", "/v1beta/models/gemini-2.5-flash:generateContent",
     "x-goog-api-key", R"({"contents":[{"parts":[{"text":")", R"("}]}]})"},
}};

/// The text of all these requests, and the prompt made of it as JSON has it.
const QString text = u" Say \"hi\" \\ é\t😀 \n"_s;
constexpr auto promptInJSON =
    "You are a professional translator.\\nTranslate the following text into tlhIngan Hol.\\nPreserve the original "
    "meaning, tone, formatting, line breaks, and terminology.\\nReturn only the translated text. Do not add "
    "explanations.\\n\\nText:\\n Say \\\"hi\\\" \\\\ é\\t😀 \\n";

struct Verdict {
    bool isValid = false;
    QByteArray words;
};

[[nodiscard]] Verdict judged(const QByteArray &body, const char *schema)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"body.json"_s));
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(body) == body.size();
    file.close();
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(u"/usr/bin/python3"_s, {u"-W"_s, u"ignore"_s, u"-m"_s, u"jsonschema"_s, u"-i"_s, file.fileName(),
                                            QStringLiteral(ORVESA_SCHEMAS "/%1.json").arg(QLatin1String(schema))});
    const bool hasEnded = isWritten && validator.waitForFinished();
    return {hasEnded && validator.exitStatus() == QProcess::NormalExit && validator.exitCode() == 0,
            validator.readAll()};
}

class ProgramRequestTest : public ::testing::Test {
protected:
    ProgramRequestTest()
    {
        for (const Case &one : cases) {
            m_desktop.keyStore().store(TranslateProgram::identifier(), QString::fromLatin1(one.account),
                                       QByteArray("key of ") + one.provider);
        }
        for (const QString &name : {u"OPENAI_BASE_URL"_s, u"XAI_BASE_URL"_s}) {
            m_environment.insert(name, m_service.address() + u"/v1/"_s);
        }
        for (const QString &name : {u"ANTHROPIC_BASE_URL"_s, u"GOOGLE_GEMINI_BASE_URL"_s}) {
            m_environment.insert(name, m_service.address() + u'/');
        }
        m_service.setResponder(
            [](const ServiceRequest &request) { return service::protocolResponse(request, u"fine"_s); });
    }

    void writePreferences(const QByteArray &lines)
    {
        m_desktop.folders().write(u"home/.config/%1.conf"_s.arg(TranslateProgram::identifier()), lines);
    }

    ProcessResult run(const QStringList &arguments, const QByteArray &input = {})
    {
        EnvironmentChanges environment = m_desktop.withoutDisplay();
        environment.insert(m_environment);
        return m_desktop.runToEnd(TranslateProgram::pathBeside(), arguments, environment, input);
    }

    /// The command line needs the key store only.
    [[nodiscard]] static DesktopOptions withoutWindows()
    {
        DesktopOptions options;
        options.windowManager = WindowManager::none;
        options.accessibility = Accessibility::none;
        return options;
    }

    Desktop m_desktop{withoutWindows()};
    LoopbackService m_service;
    EnvironmentChanges m_environment;
};

TEST_F(ProgramRequestTest, everyServiceGetsWhatItsReferenceAsksFor)
{
    for (const Case &one : cases) {
        const ProcessResult result =
            run({u"translate"_s, u"--to"_s, u"tlhIngan Hol"_s, u"--provider"_s, QString::fromLatin1(one.provider),
                 u"--model"_s, QString::fromLatin1(one.model), u"--thinking"_s, QString::fromLatin1(one.thinking)},
                text.toUtf8());
        ASSERT_EQ(result.standardOutput, "fine\n") << one.provider << result.standardError.constData();
        const ServiceRequest request = m_service.requests().back();
        EXPECT_EQ(request.target, one.target);
        EXPECT_TRUE(request.header(one.keyHeader)->endsWith(QByteArray("key of ") + one.provider));
        EXPECT_EQ(request.header("Content-Type"), "application/json");
        EXPECT_EQ(request.body, QByteArray(one.beforePrompt) + promptInJSON + one.afterPrompt);
        const Verdict verdict = judged(request.body, one.provider);
        EXPECT_TRUE(verdict.isValid) << one.provider << verdict.words.constData();
    }
    EXPECT_EQ(m_service.requests().size(), cases.size());
}

TEST_F(ProgramRequestTest, theJudgeRefusesOtherBodies)
{
    for (const Case &one : cases) {
        const QByteArray body = QByteArray(one.beforePrompt) + "x" + one.afterPrompt;
        EXPECT_TRUE(judged(body, one.provider).isValid);
        EXPECT_FALSE(judged("{\"unknown\":1," + body.mid(1), one.provider).isValid);
        EXPECT_FALSE(judged(QByteArray(body).replace("\"x\"", "7"), one.provider).isValid);
    }
    EXPECT_FALSE(judged("{}", "anthropic").isValid);
}

TEST_F(ProgramRequestTest, aTextFromTheArgumentsIsPassedAsGiven)
{
    const ProcessResult result =
        run({u"translate"_s, u"--provider"_s, u"openAI"_s, u"--to"_s, u"tlhIngan Hol"_s, text});
    ASSERT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_TRUE(m_service.requests().back().body.contains(promptInJSON));
}

TEST_F(ProgramRequestTest, standardInputStandsWhereTheArgumentsPutIt)
{
    const ProcessResult result =
        run({u"polish"_s, u"--mode"_s, u"concise"_s, u"--provider"_s, u"openAI"_s, u"before"_s, u"-"_s, u"after"_s},
            "in\n");
    ASSERT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_TRUE(m_service.requests().back().body.contains("Text:\\nbefore in\\n after\"}"));
}

TEST_F(ProgramRequestTest, standardInputIsPassedAsItCame)
{
    const ProcessResult result = run({u"translate"_s, u"--provider"_s, u"openAI"_s}, "\xEF\xBB\xBF\r\n a \n");
    ASSERT_EQ(result.exitCode, 0) << result.standardError.constData();
    EXPECT_TRUE(m_service.requests().back().body.contains("Text:\\n\xEF\xBB\xBF\\r\\n a \\n\"}"));
}

TEST_F(ProgramRequestTest, aSavedPromptRunsByItsName)
{
    writePreferences("settings.customPrompts = data '[{\"id\":\"6F1B4A52-7C1D-4C8F-9A57-0D3A1C2B4E5F\","
                     "\"name\":\" Short form \",\"template\":\"Shorten {text}, then: {text}\"}]'\n"
                     "settings.defaultProvider = \"anthropic\"\n");
    const ProcessResult result = run({u"prompt"_s, u"Short form"_s, u"a"_s, u"b"_s});
    ASSERT_EQ(result.standardOutput, "fine\n") << result.standardError.constData();
    EXPECT_TRUE(m_service.requests().back().body.contains("\"content\":\"Shorten a b, then: a b\""));
    const ProcessResult unknown = run({u"prompt"_s, u"short form"_s, u"a"_s});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_TRUE(unknown.standardError.contains("short form"));
    EXPECT_EQ(m_service.requests().size(), 1U);
}

TEST_F(ProgramRequestTest, anUnprotectedAddressIsRefusedByTheVariablesName)
{
    m_environment.insert(u"ANTHROPIC_BASE_URL"_s, u"http://service.test:1"_s);
    const ProcessResult result = run({u"translate"_s, u"--provider"_s, u"anthropic"_s, u"x"_s});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.standardError.contains("ANTHROPIC_BASE_URL")) << result.standardError.constData();
    EXPECT_FALSE(result.standardError.contains("service.test"));
}

TEST_F(ProgramRequestTest, theProxyVariablesCountAndTheirExceptionsToo)
{
    LoopbackService encrypted(LoopbackService::Transport::tls);
    encrypted.setResponder([](const ServiceRequest &request) { return service::protocolResponse(request, u"fine"_s); });
    LoopbackProxy proxy(encrypted.port());
    m_environment.insert(u"SSL_CERT_FILE"_s, encrypted.certificate().authorityPath());
    m_environment.insert(u"OPENAI_BASE_URL"_s, u"https://service.test:%1/v1"_s.arg(encrypted.port()));
    m_environment.insert(u"https_proxy"_s, proxy.address());
    const QStringList arguments{u"translate"_s, u"--provider"_s, u"openAI"_s, u"x"_s};
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.standardOutput, "fine\n") << result.standardError.constData();
    EXPECT_TRUE(result.standardError.isEmpty()) << result.standardError.constData();
    ASSERT_EQ(proxy.requests().size(), 1);
    EXPECT_TRUE(proxy.requests().front().startsWith("CONNECT service.test:"));
    EXPECT_FALSE(proxy.requests().front().contains("key of"));

    m_environment.insert(u"no_proxy"_s, u"service.test"_s);
    EXPECT_EQ(run(arguments).exitCode, 1); // nobody else knows that name
    EXPECT_EQ(proxy.requests().size(), 1);

    // This machine is reached directly whatever the variables say.
    m_environment.remove(u"no_proxy"_s);
    m_environment.insert(u"http_proxy"_s, proxy.address());
    m_environment.insert(u"OPENAI_BASE_URL"_s, m_service.address() + u"/v1"_s);
    EXPECT_EQ(run(arguments).standardOutput, "fine\n");
    EXPECT_EQ(proxy.requests().size(), 1);
}

TEST_F(ProgramRequestTest, theDesktopsProxySettingsCount)
{
    LoopbackService encrypted(LoopbackService::Transport::tls);
    encrypted.setResponder([](const ServiceRequest &request) { return service::protocolResponse(request, u"fine"_s); });
    LoopbackProxy proxy(encrypted.port());
    m_desktop.folders().write(u"home/.config/glib-2.0/settings/keyfile"_s,
                              "[system/proxy]\nmode='manual'\n[system/proxy/https]\nhost='127.0.0.1'\nport=" +
                                  QByteArray::number(proxy.port()) + '\n');
    m_environment.insert(u"DESKTOP_SESSION"_s, u"gnome"_s);
    m_environment.insert(u"GSETTINGS_BACKEND"_s, u"keyfile"_s);
    m_environment.insert(u"SSL_CERT_FILE"_s, encrypted.certificate().authorityPath());
    m_environment.insert(u"OPENAI_BASE_URL"_s, u"https://service.test:%1/v1"_s.arg(encrypted.port()));
    const ProcessResult result = run({u"translate"_s, u"--provider"_s, u"openAI"_s, u"x"_s});
    EXPECT_EQ(result.standardOutput, "fine\n") << result.standardError.constData();
    ASSERT_EQ(proxy.requests().size(), 1);
    EXPECT_TRUE(proxy.requests().front().startsWith("CONNECT service.test:"));
}

TEST_F(ProgramRequestTest, nothingIsKeptOnDisk)
{
    service::ServiceResponse response = service::ServiceResponse::json(service::chatCompletionAnswer(u"fine"_s));
    response.headers.emplace_back("Cache-Control", "public, max-age=86400");
    response.headers.emplace_back("Set-Cookie", "session=marker-of-a-session; Max-Age=86400");
    m_service.setScript({response, response});
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_EQ(run({u"translate"_s, u"--provider"_s, u"openAI"_s, u"marker-of-a-text"_s}).exitCode, 0);
    }
    ASSERT_EQ(m_service.requests().size(), 2U);
    EXPECT_FALSE(m_service.requests().back().header("Cookie"));
    QDirIterator files(m_desktop.folders().top(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    int looked = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        ++looked;
        const QByteArray content = file.readAll();
        EXPECT_FALSE(content.contains("marker-of-a-session") || content.contains("marker-of-a-text"))
            << file.fileName().toStdString();
    }
    EXPECT_GT(looked, 0);
}

} // namespace

} // namespace orvesa::desktop
