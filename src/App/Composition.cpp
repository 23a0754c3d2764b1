#include "App/Composition.h"

#include "App/CompositionDoctor.h"
#include "App/CompositionProcess.h"
#include "App/DesktopPorts.h"
#include "App/StandardStreams.h"
#include "Platform/linux/CoreDumps.h"
#include "Platform/linux/DisplayProbe.h"
#include "Platform/linux/LinuxDesktop.h"
#include "Platform/linux/TerminationSignals.h"
#include "Platform/linux/ToolScreenCapture.h"
#include "Platform/linux/ToolTextRecognition.h"
#include "Platform/linux/WaylandSession.h"
#include "Platform/linux/XDGAutostart.h"
#include "UI/AccessibilityTrustDialog.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QApplication>
#include <QSessionManager>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa::Composition {

using CommandLine::ExitCode;

namespace {

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

/// What a Linux desktop's utility needs beside the desktop's bundle of adapters.
struct UtilityTools {
    explicit UtilityTools(ATSPITrust &accessibilityTrust)
        : trust(accessibilityTrust), capture(toolBesideProgram(u"orvesa-screencapture"_s)),
          recognition(toolBesideProgram(u"orvesa-recognize"_s))
    {
        trust.setRequestPresenter([this] { requestTrust(); });
    }

    void requestTrust()
    {
        if (!trustDialog) {
            trustDialog = std::make_unique<AccessibilityTrustDialog>([this] { trust.enable(); });
        }
        trustDialog->present();
    }

    ATSPITrust &trust;
    ToolScreenCapture capture;
    ToolTextRecognition recognition;
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
    std::optional<WaylandSession::PreferredPlatform> platform(std::in_place);
    QApplication application(argc, argv);
    platform.reset();
    const DeferredDeletion deletion;
    nameApplication();
    QGuiApplication::setDesktopFileName(bundleIdentifier());
    QGuiApplication::setQuitOnLastWindowClosed(false);
    stayOutOfSavedSessions(application);
    const TerminationSignals signals([] { QCoreApplication::quit(); });

    LinuxDesktop desktop(bundleIdentifier(), applicationName());
    std::unique_ptr<UtilityTools> tools;
    const auto make = [&] {
        migratePreferences(desktop.userDefaults());
        tools = std::make_unique<UtilityTools>(desktop.accessibilityTrust());
        QGuiApplication::setWindowIcon(Symbols::icon(u"character.bubble"_s, Style::color(accent(AppTheme::violet))));
        return std::make_unique<Utility>(portsOf(desktop, tools->capture, tools->recognition));
    };
    return serve(desktop.singleInstance(), {.make = make, .warmUp = [&desktop] { desktop.warmUp(); }});
}

ExitCode runCommand(int &argc, char **argv, const CommandLine::Request &request)
{
    CoreDumps::turnOff();
    const QCoreApplication application(argc, argv);
    const DeferredDeletion deletion;
    nameApplication();
    LinuxDesktop desktop(bundleIdentifier(), applicationName());
    migratePreferences(desktop.userDefaults());
    ToolTextRecognition recognition(toolBesideProgram(u"orvesa-recognize"_s));
    XDGAutostart entry = autostartEntry();
    const auto examine = [&desktop](Services &services, CommandLine::Doctor examination) {
        return doctor(desktop, services, examination);
    };
    return run({desktop.userDefaults(), desktop.preferredLanguages(), desktop.keyStore(), recognition, entry, examine},
               request);
}

} // namespace orvesa::Composition
