#pragma once

// What the process is on every desktop, once the composition has made the desktop's adapters.
//
// Main thread. The ports must outlive the calls.

#include "App/CommandLine.h"
#include "App/Utility.h"

#include <QCoroTask>

#include <functional>
#include <memory>

namespace orvesa {

class AutostartPort;
class SingleInstancePort;

namespace Composition {

[[nodiscard]] QString applicationName();
[[nodiscard]] QString bundleIdentifier();

/// Gives the application object, which has just been made, its name and version.
void nameApplication();

/// Takes over what an earlier release saved, before anything reads the preferences.
void migratePreferences(UserDefaultsPort &defaults);

/// Deletes at the end what was to be deleted later: no event loop comes any more that would do it. Made right after the
/// application, so that it goes right before it.
class DeferredDeletion final {
public:
    DeferredDeletion() = default;
    ~DeferredDeletion();
    Q_DISABLE_COPY_MOVE(DeferredDeletion)
};

/// What of the utility each desktop does in its own way.
struct UtilityStart {
    /// Called when it is clear that this is the one instance.
    std::function<std::unique_ptr<Utility>()> make;
    /// What the desktop's adapters can do ahead, in an idle moment; none where there is nothing.
    std::function<void()> warmUp{};
};

/// Runs the utility until it is quit, or hands over to the one that runs already.
[[nodiscard]] CommandLine::ExitCode serve(SingleInstancePort &instance, const UtilityStart &start);

/// What the commands need of the desktop.
struct CommandPorts {
    UserDefaultsPort &userDefaults;
    const PreferredLanguagesPort &preferredLanguages;
    KeyStorePort &keyStore;
    TextRecognitionPort &textRecognition;
    AutostartPort &autostart;
    /// Looks at the desktop.
    std::function<QCoro::Task<CommandLine::ExitCode>(Services &, CommandLine::Doctor)> doctor;
};

/// Runs one of the commands and prints what it has to say.
[[nodiscard]] CommandLine::ExitCode run(const CommandPorts &ports, const CommandLine::Request &request);

} // namespace Composition

} // namespace orvesa
