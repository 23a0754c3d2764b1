#include "App/CompositionPerform.h"

#include "App/BuildIdentity.h"
#include "App/PerformCommand.h"
#include "Platform/linux/DBusSingleInstance.h"

#include <QCoreApplication>

namespace orvesa::Composition {

CommandLine::ExitCode perform(int &argc, char **argv, const QString &action)
{
    const QCoreApplication application(argc, argv);
    DBusSingleInstance instance;
    return PerformCommand(instance, QStringView(BuildIdentity::bundleIdentifier).toString()).run(action);
}

} // namespace orvesa::Composition
