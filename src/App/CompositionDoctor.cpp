#include "App/CompositionDoctor.h"

#include "AI/ServiceReach.h"
#include "App/BuildCommit.h"
#include "App/BuildIdentity.h"
#include "App/DoctorCommand.h"
#include "App/Services.h"
#include "Platform/linux/LinuxDesktop.h"
#include "Platform/linux/LinuxDesktopInspection.h"

#include <QCoreApplication>
#include <QProcessEnvironment>

namespace orvesa::Composition {

using namespace Qt::StringLiterals;
using CommandLine::ExitCode;

namespace {

QString text(std::u16string_view view)
{
    return QStringView(view).toString();
}

} // namespace

XDGAutostart autostartEntry()
{
    return {text(BuildIdentity::bundleIdentifier), text(BuildIdentity::name), QCoreApplication::applicationFilePath()};
}

QCoro::Task<ExitCode> doctor(LinuxDesktop &desktop, Services &services, CommandLine::Doctor request)
{
    const QString folder = QCoreApplication::applicationDirPath();
    LinuxDesktopInspection inspection({folder + u"/orvesa-screencapture"_s, folder + u"/orvesa-recognize"_s});
    const XDGAutostart entry = autostartEntry();
    const ServiceAddresses addresses(QProcessEnvironment::systemEnvironment());
    ServiceReach reach(services.network, services.proxies);
    const DoctorCommand::Collaborators collaborators{
        inspection, desktop.hotKeys(), desktop.singleInstance(), services.settings, services.keychain, entry, addresses,
        reach};
    const DoctorCommand command(collaborators, text(BuildIdentity::bundleIdentifier), versionText());
    co_return co_await command.run(request);
}

} // namespace orvesa::Composition
