// The process entry: what the arguments ask for is done, nothing else is decided here.
//
// What needs no window and no service is done right here, so that a key bound to `--perform` costs next to nothing. The
// rest of the program, with the libraries that it needs, is loaded only when it is wanted.

#include "App/BuildCommit.h"
#include "App/CommandLine.h"
#include "App/CompositionPerform.h"
#include "App/ProgramEntry.h"
#include "App/StandardStreams.h"

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

using orvesa::CommandLine::ExitCode;
namespace CommandLine = orvesa::CommandLine;
namespace StandardStreams = orvesa::StandardStreams;

ExitCode printed(const QString &text)
{
    return StandardStreams::writeOutput(text) ? ExitCode::success : ExitCode::failure;
}

/// The program proper. It stays loaded to the end.
int runLoaded(int &argc, char **argv)
{
    // Lazily: otherwise every function of the libraries below is looked up at once too, which nobody waits for
    // elsewhere.
    void *const library = ::dlopen(orvesa::programLibrary, RTLD_LAZY | RTLD_LOCAL);
    void *const entry = library != nullptr ? ::dlsym(library, orvesa::programEntry) : nullptr;
    if (entry == nullptr) {
        StandardStreams::writeError(
            u"orvesa-translate: a part of the program cannot be loaded: %1"_s.arg(QString::fromLocal8Bit(::dlerror())));
        return static_cast<int>(ExitCode::failure);
    }
    return reinterpret_cast<orvesa::ProgramEntry *>(entry)(argc, argv);
}

int run(int &argc, char **argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const CommandLine::Request request = CommandLine::parse(arguments);
    if (const auto *error = std::get_if<CommandLine::UsageError>(&request)) {
        StandardStreams::writeError(u"orvesa-translate: %1\nTry: orvesa-translate --help"_s.arg(error->message));
        return static_cast<int>(ExitCode::usage);
    }
    if (std::holds_alternative<CommandLine::ShowHelp>(request)) {
        return static_cast<int>(printed(CommandLine::helpText().chopped(1)));
    }
    if (std::holds_alternative<CommandLine::ShowVersion>(request)) {
        return static_cast<int>(printed(orvesa::versionText()));
    }
    if (const auto *perform = std::get_if<CommandLine::Perform>(&request)) {
        return static_cast<int>(orvesa::Composition::perform(argc, argv, perform->action));
    }
    return runLoaded(argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    StandardStreams::reserveMissing();
    return run(argc, argv);
}
