#include "BenchStage.h"

#include "ProcessFigures.h"

#include "AI/AIProviderType.h"
#include "Platform/linux/FileUserDefaults.h"
#include "service/ServiceAnswers.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr auto provider = AIProviderType::openAI;

/// As most desktops are: applications can be read, and no screen reader has them tell of every change.
desktop::DesktopOptions desktopOptions()
{
    desktop::DesktopOptions options;
    options.listening = desktop::Listening::none;
    return options;
}

} // namespace

BenchStage::BenchStage(QString programFolder)
    : m_programFolder(std::move(programFolder)), m_service(service::LoopbackService::Transport::tls),
      m_desktop(desktopOptions()), m_tray(m_desktop.sessionBusAddress())
{
    m_service.setResponder([](const service::ServiceRequest &request) {
        return service::protocolResponse(request, u"The weather is fine today, and the train was on time."_s);
    });
    saveSettings();
    openEditor();
}

QString BenchStage::floorProgram() const
{
    return m_programFolder + u"/orvesa-floor"_s;
}

QString BenchStage::productProgram() const
{
    return m_programFolder + u"/orvesa-translate"_s;
}

void BenchStage::saveSettings()
{
    FileUserDefaults defaults(QStringLiteral(ORVESA_BUNDLE_IDENTIFIER), m_desktop.folders().configuration());
    defaults.set(u"settings.defaultProvider"_s, rawValue(provider));
    m_desktop.keyStore().store(QStringLiteral(ORVESA_BUNDLE_IDENTIFIER), keychainAccount(provider), "no-real-key");
}

void BenchStage::openEditor()
{
    const QString text = u"Hoy hace buen tiempo y el tren lleg\u00f3 a la hora."_s;
    const QString path = m_desktop.folders().home() + u"/letter.txt"_s;
    QFile letter(path);
    if (!letter.open(QIODevice::WriteOnly) || letter.write(text.toUtf8()) < 0) {
        throw std::runtime_error("cannot write the letter for the editor");
    }
    letter.close();
    const desktop::Process &editor = m_desktop.launch(u"mousepad"_s, {path});
    m_editorWindow = m_desktop.windows().awaitWindow({.pid = editor.pid()});
    focusEditor();
    m_desktop.keyboard().press(u"Ctrl+a"_s);
    m_desktop.selections().awaitText(desktop::Selection::primary, text);
}

void BenchStage::focusEditor()
{
    m_desktop.windows().focus(m_editorWindow);
}

desktop::Process &BenchStage::launch(const QString &program, const QStringList &arguments)
{
    return m_desktop.launch(program, arguments,
                            {{u"OPENAI_BASE_URL"_s, m_service.address() + u"/v1"_s},
                             {u"SSL_CERT_FILE"_s, m_service.certificate().authorityPath()}});
}

qint64 BenchStage::awaitLoop(const desktop::Process &process, std::chrono::milliseconds deadline)
{
    return m_tray.awaitAnswer(process.pid(), deadline);
}

void BenchStage::expectShortcutsHeld()
{
    for (const auto &combination : {u"Alt+d"_s, u"Alt+s"_s, u"Alt+a"_s}) {
        if (!m_desktop.keyboard().isTaken(combination)) {
            throw std::runtime_error("the product's event loop runs and nobody holds " + combination.toStdString());
        }
    }
}

void BenchStage::awaitRest(const desktop::Process &process, std::chrono::milliseconds quiet)
{
    constexpr int quietSpans = 2;
    constexpr int mostSpans = 50;
    constexpr qint64 restingNanoseconds = 500'000; // a timer that fires, not work
    int quietInARow = 0;
    for (int span = 0; span < mostSpans && quietInARow < quietSpans; ++span) {
        const qint64 before = processorTimeOf(process.pid());
        desktop::processEventsFor(quiet);
        quietInARow = processorTimeOf(process.pid()) - before < restingNanoseconds ? quietInARow + 1 : 0;
    }
    if (quietInARow < quietSpans || !process.isRunning()) {
        throw std::runtime_error(process.program().toStdString() + " did not come to rest; it said: " +
                                 process.standardError().right(2'000).toStdString());
    }
}

} // namespace orvesa::benchmark
