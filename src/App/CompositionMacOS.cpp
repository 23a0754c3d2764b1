#include "AI/ErrorText.h"
#include "App/Composition.h"
#include "App/CompositionPerform.h"
#include "App/CompositionProcess.h"
#include "App/DesktopPorts.h"
#include "App/MainMenu.h"
#include "App/PerformCommand.h"
#include "App/StandardStreams.h"
#include "Platform/macos/AppKitApplication.h"
#include "Platform/macos/AppKitSymbols.h"
#include "Platform/macos/CFNetworkWording.h"
#include "Platform/macos/MacDesktop.h"
#include "Platform/macos/MessagePortSingleInstance.h"
#include "UI/Symbols.h"

#include <QApplication>
#include <QImage>

using namespace Qt::StringLiterals;

namespace orvesa::Composition {

using CommandLine::ExitCode;

namespace {

QCoro::Task<ExitCode> refuseToExamine(Services &services, CommandLine::Doctor examination)
{
    Q_UNUSED(services)
    Q_UNUSED(examination)
    StandardStreams::writeError(u"This command looks at Linux desktops only."_s);
    co_return ExitCode::failure;
}

} // namespace

ExitCode runUtility(int &argc, char **argv)
{
    MacDesktop desktop(bundleIdentifier());
    migratePreferences(desktop.userDefaults());
    const QApplication application(argc, argv);
    const DeferredDeletion deletion;
    nameApplication();
    setTransferWording(CFNetworkWording::text);
    Symbols::setSource(AppKitSymbols::image);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    std::unique_ptr<MainMenu> mainMenu;
    const auto make = [&] {
        auto utility = std::make_unique<Utility>(portsOf(desktop, desktop.screenCapture(), desktop.textRecognition()));
        AppKitApplication::becomeAccessory();
        mainMenu = std::make_unique<MainMenu>();
        return utility;
    };
    return serve(desktop.singleInstance(), {.make = make});
}

ExitCode runCommand(int &argc, char **argv, const CommandLine::Request &request)
{
    MacDesktop desktop(bundleIdentifier());
    migratePreferences(desktop.userDefaults());
    const QCoreApplication application(argc, argv);
    const DeferredDeletion deletion;
    nameApplication();
    setTransferWording(CFNetworkWording::text);
    return run({desktop.userDefaults(), desktop.preferredLanguages(), desktop.keyStore(), desktop.textRecognition(),
                desktop.autostart(), refuseToExamine},
               request);
}

ExitCode perform(int &argc, char **argv, const QString &action)
{
    const QCoreApplication application(argc, argv);
    MessagePortSingleInstance instance;
    return PerformCommand(instance, bundleIdentifier()).run(action);
}

} // namespace orvesa::Composition
