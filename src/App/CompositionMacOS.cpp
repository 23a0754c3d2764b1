#include "AI/ErrorText.h"
#include "App/AppDelegate.h"
#include "App/AutostartCommand.h"
#include "App/BuildIdentity.h"
#include "App/CommandRunner.h"
#include "App/Composition.h"
#include "App/CompositionPerform.h"
#include "App/Job.h"
#include "App/KeyCommand.h"
#include "App/MainMenu.h"
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
#include "Platform/macos/AppKitApplication.h"
#include "Platform/macos/AppKitSymbols.h"
#include "Platform/macos/CFNetworkWording.h"
#include "Platform/macos/MacDesktop.h"
#include "Platform/macos/MessagePortSingleInstance.h"
#include "UI/FloatingResultPanelController.h"
#include "UI/Symbols.h"

#include <QApplication>
#include <QImage>
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
    setTransferWording(CFNetworkWording::text);
}

/// Takes over what an earlier release saved, before anything reads the preferences.
void migratePreferences(MacDesktop &desktop)
{
    LegacyMigration::migrateUserDefaultsIfNeeded(
        desktop.userDefaults(),
        QStringList{text(BuildIdentity::firstLegacyIdentifier), text(BuildIdentity::secondLegacyIdentifier)});
}

/// Everything that the running utility consists of, in the order in which it is built.
struct Utility {
    explicit Utility(MacDesktop &desktop)
        : services(desktop.userDefaults(), desktop.preferredLanguages(), desktop.keyStore()),
          clipboard(desktop.pasteboard()),
          selection({desktop.accessibilityElements(), desktop.accessibilityTrust(), desktop.workspace(),
                     desktop.keyboardEvents(), desktop.pasteboard(), desktop.clock()}),
          ocr(desktop.screenCapture(), desktop.textRecognition()),
          panel(services.settings, desktop.panelWindow(), desktop.mouseMonitor()),
          coordinator({desktop.accessibilityTrust(), selection, clipboard, ocr, services.settings, services.providers,
                       panel, desktop.clock()}),
          delegate({coordinator, services.settings, services.keychain, services.providers, desktop.hotKeys(), recording,
                    desktop.keyMonitor(), desktop.accessibilityTrust(), desktop.workspace(), desktop.tray()})
    {
    }

    // A transfer in flight ends while everything that its end touches is still there.
    ~Utility() { coordinator.cancelCurrentTask(); }
    Q_DISABLE_COPY_MOVE(Utility)

    /// What the first shortcut would otherwise have to wait for.
    void warmUp()
    {
        OCRService::removeLeftovers();
        QSslSocket::supportsSsl();
        panel.prepare();
    }

    Services services;
    ClipboardService clipboard;
    TextSelectionService selection;
    OCRService ocr;
    FloatingResultPanelController panel;
    TranslationCoordinator coordinator;
    HotKeyRecordingState recording;
    MainMenu mainMenu;
    AppDelegate delegate;
};

SingleInstancePort::Handlers handlersOf(std::unique_ptr<Utility> &utility)
{
    return {.activate =
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
            .heldShortcuts = [&utility] { return utility ? utility->delegate.heldShortcuts() : QList<quint32>(); }};
}

/// Every command that has to wait for something.
QCoro::Task<ExitCode> runSuspending(MacDesktop &desktop, Services &services, CommandLine::Request request)
{
    if (const auto *key = std::get_if<CommandLine::Key>(&request)) {
        const KeyCommand command(services.keychain, SecretInput::read);
        co_return co_await command.run(*key);
    }
    if (const auto *image = std::get_if<CommandLine::Recognize>(&request)) {
        const RecognizeCommand command(desktop.textRecognition());
        co_return co_await command.run(*image);
    }
    if (std::holds_alternative<CommandLine::Doctor>(request)) {
        StandardStreams::writeError(u"This command looks at Linux desktops only."_s);
        co_return ExitCode::failure;
    }
    const CommandRunner runner(services.settings, services.providers);
    co_return co_await runner.run(request);
}

} // namespace

ExitCode runUtility(int &argc, char **argv)
{
    MacDesktop desktop(text(BuildIdentity::bundleIdentifier));
    migratePreferences(desktop);
    QApplication application(argc, argv);
    nameApplication();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    AppKitApplication::becomeAccessory();
    Symbols::setSource(AppKitSymbols::image);

    std::unique_ptr<Utility> utility;
    const QString identifier = text(BuildIdentity::bundleIdentifier);
    SingleInstancePort &instance = desktop.singleInstance();
    if (instance.claim(identifier, handlersOf(utility)) == SingleInstancePort::Claim::runsAlready) {
        return instance.ask(identifier, QString()) ? ExitCode::success : ExitCode::failure;
    }
    utility = std::make_unique<Utility>(desktop);
    utility->delegate.applicationDidFinishLaunching();
    QTimer::singleShot(std::chrono::milliseconds::zero(), &application, [&utility] { utility->warmUp(); });
    const int code = QApplication::exec();
    utility.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return code == 0 ? ExitCode::success : ExitCode::failure;
}

ExitCode runCommand(int &argc, char **argv, const CommandLine::Request &request)
{
    MacDesktop desktop(text(BuildIdentity::bundleIdentifier));
    migratePreferences(desktop);
    QCoreApplication application(argc, argv);
    nameApplication();
    if (const auto *settings = std::get_if<CommandLine::Settings>(&request)) {
        return SettingsCommand(desktop.userDefaults(), desktop.preferredLanguages()).run(*settings);
    }
    if (const auto *entry = std::get_if<CommandLine::Autostart>(&request)) {
        return AutostartCommand(desktop.autostart()).run(*entry);
    }
    Services services(desktop.userDefaults(), desktop.preferredLanguages(), desktop.keyStore());
    ExitCode result = ExitCode::failure;
    QTimer::singleShot(std::chrono::milliseconds::zero(), &application, [&] {
        (void)Job::start([&](std::stop_token) -> QCoro::Task<void> {
            result = co_await runSuspending(desktop, services, request);
            QCoreApplication::quit();
        });
    });
    QCoreApplication::exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return result;
}

ExitCode perform(int &argc, char **argv, const QString &action)
{
    const QCoreApplication application(argc, argv);
    MessagePortSingleInstance instance;
    if (instance.ask(text(BuildIdentity::bundleIdentifier), action)) {
        return ExitCode::success;
    }
    StandardStreams::writeError(u"The utility does not run in this session."_s);
    return ExitCode::failure;
}

} // namespace orvesa::Composition
