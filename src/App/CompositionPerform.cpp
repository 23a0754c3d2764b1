#include "App/CompositionPerform.h"

#include "App/BuildIdentity.h"
#include "App/StandardStreams.h"
#include "Platform/linux/DBusSingleInstance.h"

#include <QCoreApplication>

namespace orvesa::Composition {

using namespace Qt::StringLiterals;
using CommandLine::ExitCode;

ExitCode perform(int &argc, char **argv, const QString &action)
{
    const QCoreApplication application(argc, argv);
    DBusSingleInstance instance;
    if (instance.ask(QStringView(BuildIdentity::bundleIdentifier).toString(), action)) {
        return ExitCode::success;
    }
    StandardStreams::writeError(u"The utility does not run in this session."_s);
    return ExitCode::failure;
}

} // namespace orvesa::Composition
