#include "App/Composition.h"

#include "App/AppDelegate.h"
#include "App/BuildIdentity.h"
#include "App/CommandRunner.h"
#include "App/CompositionDoctor.h"
#include "App/KeyCommand.h"
#include "App/RecognizeCommand.h"
#include "App/SecretInput.h"
#include "App/Services.h"
#include "App/SettingsCommand.h"
#include "App/StandardStreams.h"
#include "App/TranslationCoordinator.h"
#include "Core/ClipboardService.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/LegacyMigration.h"
#include "Core/OCRService.h"
#include "Core/TextSelectionService.h"
#include "Platform/linux/CoreDumps.h"
#include "Platform/linux/DisplayProbe.h"
#include "Platform/linux/LinuxDesktop.h"
#include "Platform/linux/TerminationSignals.h"
#include "Platform/linux/ToolScreenCapture.h"
#include "Platform/linux/ToolTextRecognition.h"
#include "UI/AccessibilityTrustDialog.h"
#include "UI/FloatingResultPanelController.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QApplication>
#include <QSessionManager>
#include <QLoggingCategory>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace orvesa::Composition {

using CommandLine::ExitCode;

namespace {

QString text(std::u16string_view view)
{
    return QStringView(view).toString();
}

void nameApplication()
{
    QCoreApplication::setApplicationName(text(BuildIdentity::name));
    QCoreApplication::setApplicationVersion(text(BuildIdentity::version));
    // Qt reports every HTTP/2 stream that ends early, cancelled ones too; what matters reaches the user as a failure.
    QLoggingCategory::setFilterRules(u"qt.network.http2.warning=false"_s);
}

/// Takes over what an earlier release saved, before anything reads the preferences.
void migratePreferences(LinuxDesktop &desktop)
{
    LegacyMigration::migrateUserDefaultsIfNeeded(
        desktop.userDefaults(),
        QStringList{text(BuildIdentity::firstLegacyIdentifier), text(BuildIdentity::secondLegacyIdentifier)});
}

/// Authorities of a company's own, in the variable that other programs read them from. They come on top of the
/// system's.
void addCertificateAuthorities()
{
    const QString file = qEnvironmentVariable("SSL_CERT_FILE");
    if (file.isEmpty()) {
        return;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (configuration.addCaCertificates(file)) {
        QSslConfiguration::setDefaultConfiguration(configuration);
    } else {
        qWarning("OrvesaTranslate: no certificates in the file that SSL_CERT_FILE names");
    }
}

/// Deletes at the end what was to be deleted later: no event loop comes any more that would do it. Made right after the
/// application, so that it goes right before it.
class DeferredDeletion final {
public:
    DeferredDeletion() = default;
    ~DeferredDeletion() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    Q_DISABLE_COPY_MOVE(DeferredDeletion)
};

/// The desktop's own autostart decides whether the program comes with the next session: restored by the session manager
/// as well, it would be a second start, which opens the settings.
void stayOutOfSavedSessions(const QGuiApplication &application)
{
    const auto never = [](QSessionManager &manager) { manager.setRestartHint(QSessionManager::RestartNever); };
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, never);
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application, never);
}

QString toolBesideProgram(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

/// Everything that the running utility consists of, in the order in which it is built.
struct Utility {
    explicit Utility(LinuxDesktop &platform)
        : desktop(platform), services(platform.userDefaults(), platform.preferredLanguages(), platform.keyStore()),
          clipboard(platform.pasteboard()),
          selection({platform.accessibilityElements(), platform.accessibilityTrust(), platform.workspace(),
                     platform.keyboardEvents(), platform.pasteboard(), platform.clock()}),

          capture(toolBesideProgram(u"orvesa-screencapture"_s)), recognition(toolBesideProgram(u"orvesa-recognize"_s)),
          ocr(capture, recognition), panel(services.settings, platform.panelWindow(), platform.mouseMonitor()),
          coordinator({platform.accessibilityTrust(), selection, clipboard, ocr, services.settings, services.providers,
                       panel, platform.clock()}),
          delegate({coordinator, services.settings, services.keychain, services.providers, platform.hotKeys(),
                    recording, platform.keyMonitor(), platform.accessibilityTrust(), platform.workspace(),
                    platform.tray()})
    {
        platform.accessibilityTrust().setRequestPresenter([this] { requestTrust(); });
    }

    // What is under way ends while everything that its end touches is still there.
    ~Utility()
    {
        coordinator.cancelCurrentTask();
        desktop.endPending();
    }
    Q_DISABLE_COPY_MOVE(Utility)

    void requestTrust()
    {
        if (!trustDialog) {
            trustDialog = std::make_unique<AccessibilityTrustDialog>([this] { desktop.accessibilityTrust().enable(); });
        }
        trustDialog->present();
    }

    /// What the first shortcut would otherwise have to wait for.
    void warmUp()
    {
        addCertificateAuthorities();
        OCRService::removeLeftovers();
        QSslSocket::supportsSsl();
        desktop.warmUp();
        panel.prepare();
    }

    LinuxDesktop &desktop;
    Services services;
    ClipboardService clipboard;
    TextSelectionService selection;
    ToolScreenCapture capture;
    ToolTextRecognition recognition;
    OCRService ocr;
    FloatingResultPanelController panel;
    TranslationCoordinator coordinator;
    HotKeyRecordingState recording;
    AppDelegate delegate;
    std::unique_ptr<AccessibilityTrustDialog> trustDialog;
};

} // namespace

ExitCode runUtility(int &argc, char **argv)
{
    if (!hasDisplay()) {
        StandardStreams::writeError(
            u"There is no display to show the utility on. Start it in a graphical session, or use "
            u"the commands that --help lists."_s);
        return ExitCode::failure;
    }
    CoreDumps::turnOff();
    QApplication application(argc, argv);
    const DeferredDeletion deletion;
    nameApplication();
    QGuiApplication::setDesktopFileName(text(BuildIdentity::bundleIdentifier));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    stayOutOfSavedSessions(application);
    const TerminationSignals signals([] { QCoreApplication::quit(); });

    const QString identifier = text(BuildIdentity::bundleIdentifier);
    LinuxDesktop desktop(identifier, text(BuildIdentity::name));
    std::unique_ptr<Utility> utility;
    const SingleInstancePort::Handlers handlers{
        .activate =
            [&utility] {
                if (utility) {
                    utility->delegate.openSettings();
                }
            },
        .perform =
            [&utility](const QString &action) {
                if (utility) {
                    utility->delegate.performNamed(action);
                }
            },
        .heldShortcuts = [&utility] { return utility ? utility->delegate.heldShortcuts() : QList<quint32>(); },
    };
    if (desktop.singleInstance().claim(identifier, handlers) == SingleInstancePort::Claim::runsAlready) {
        return desktop.singleInstance().ask(identifier, QString()) ? ExitCode::success : ExitCode::failure;
    }
    migratePreferences(desktop);
    utility = std::make_unique<Utility>(desktop);
    QGuiApplication::setWindowIcon(Symbols::icon(u"character.bubble"_s, Style::color(accent(AppTheme::violet))));
    utility->delegate.applicationDidFinishLaunching();
    QTimer::singleShot(std::chrono::milliseconds::zero(), &application, [&utility] { utility->warmUp(); });
    return QApplication::exec() == 0 ? ExitCode::success : ExitCode::failure;
}

ExitCode runCommand(int &argc, char **argv, const CommandLine::Request &request)
{
    CoreDumps::turnOff();
    QCoreApplication application(argc, argv);
    const DeferredDeletion deletion;
    nameApplication();
    LinuxDesktop desktop(text(BuildIdentity::bundleIdentifier), text(BuildIdentity::name));
    migratePreferences(desktop);
    if (const auto *settings = std::get_if<CommandLine::Settings>(&request)) {
        return SettingsCommand(desktop.userDefaults(), desktop.preferredLanguages()).run(*settings);
    }
    if (const auto *entry = std::get_if<CommandLine::Autostart>(&request)) {
        return autostart(*entry);
    }
    addCertificateAuthorities();
    Services services(desktop.userDefaults(), desktop.preferredLanguages(), desktop.keyStore());
    const CommandRunner runner(services.settings, services.providers);
    const KeyCommand keyCommand(services.keychain, SecretInput::read);
    ToolTextRecognition recognition(toolBesideProgram(u"orvesa-recognize"_s));
    const RecognizeCommand recognizeCommand(recognition);
    ExitCode result = ExitCode::failure;
    QTimer::singleShot(std::chrono::milliseconds::zero(), &application, [&] {
        (void)Job::start([&](std::stop_token) -> QCoro::Task<void> {
            if (const auto *key = std::get_if<CommandLine::Key>(&request)) {
                result = co_await keyCommand.run(*key);
            } else if (const auto *recognize = std::get_if<CommandLine::Recognize>(&request)) {
                result = co_await recognizeCommand.run(*recognize);
            } else if (const auto *examination = std::get_if<CommandLine::Doctor>(&request)) {
                result = co_await doctor(desktop, services, *examination);
            } else {
                result = co_await runner.run(request);
            }
            QCoreApplication::quit();
        });
    });
    QCoreApplication::exec();
    return result;
}

} // namespace orvesa::Composition
