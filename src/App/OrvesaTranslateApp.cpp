// The process entry: what the arguments ask for is done, nothing else is decided here.

#include "App/BuildIdentity.h"
#include "App/CommandLine.h"
#include "App/Composition.h"
#include "App/StandardStreams.h"

using namespace Qt::StringLiterals;

namespace {

using orvesa::CommandLine::ExitCode;
namespace CommandLine = orvesa::CommandLine;
namespace StandardStreams = orvesa::StandardStreams;

ExitCode printed(const QString &text)
{
    return StandardStreams::writeOutput(text) ? ExitCode::success : ExitCode::failure;
}

ExitCode run(int &argc, char **argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const CommandLine::Request request = CommandLine::parse(arguments);
    if (const auto *error = std::get_if<CommandLine::UsageError>(&request)) {
        StandardStreams::writeError(u"orvesa-translate: %1\nTry: orvesa-translate --help"_s.arg(error->message));
        return ExitCode::usage;
    }
    if (std::holds_alternative<CommandLine::ShowHelp>(request)) {
        return printed(CommandLine::helpText().chopped(1));
    }
    if (std::holds_alternative<CommandLine::ShowVersion>(request)) {
        return printed(
            u"%1 %2"_s.arg(QStringView(orvesa::BuildIdentity::name), QStringView(orvesa::BuildIdentity::version)));
    }
    if (const auto *perform = std::get_if<CommandLine::Perform>(&request)) {
        return orvesa::Composition::perform(argc, argv, perform->action);
    }
    if (std::holds_alternative<CommandLine::StartUtility>(request)) {
        return orvesa::Composition::runUtility(argc, argv);
    }
    return orvesa::Composition::runCommand(argc, argv, request);
}

} // namespace

int main(int argc, char *argv[])
{
    return static_cast<int>(run(argc, argv));
}
