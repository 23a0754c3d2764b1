#include "App/ProgramEntry.h"

#include "App/Composition.h"

// The name is in ProgramEntry.h, where the process entry looks for it.
extern "C" __attribute__((visibility("default"))) int orvesaTranslateMain(int &argc, char **argv)
{
    namespace CommandLine = orvesa::CommandLine;
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const CommandLine::Request request = CommandLine::parse(arguments);
    if (std::holds_alternative<CommandLine::StartUtility>(request)) {
        return static_cast<int>(orvesa::Composition::runUtility(argc, argv));
    }
    return static_cast<int>(orvesa::Composition::runCommand(argc, argv, request));
}
