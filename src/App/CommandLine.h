#pragma once

// What the program was asked to do on its command line. A pure function of the arguments.

#include "AI/AIProviderType.h"
#include "Models/PolishMode.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace orvesa::CommandLine {

/// Exit codes of the program.
enum class ExitCode : int { success = 0, failure = 1, usage = 2 };

/// What replaces the saved settings for one run.
struct Overrides {
    std::optional<AIProviderType> provider;
    std::optional<QString> model;
    std::optional<bool> thinking;
    bool operator==(const Overrides &) const = default;
};

struct StartUtility {
    bool operator==(const StartUtility &) const = default;
};
struct ShowVersion {
    bool operator==(const ShowVersion &) const = default;
};
struct ShowHelp {
    bool operator==(const ShowHelp &) const = default;
};
struct Perform {
    QString action; ///< one that outsideAction() knows
    bool operator==(const Perform &) const = default;
};
/// One argument of the text to work on; without a value it stands for all of standard input.
using TextArgument = std::optional<QString>;

struct Translate {
    std::optional<QString> language; ///< the saved one when absent
    Overrides overrides;
    QList<TextArgument> text; ///< never empty
    bool operator==(const Translate &) const = default;
};
struct Polish {
    std::optional<PolishMode> mode; ///< the saved one when absent
    Overrides overrides;
    QList<TextArgument> text;
    bool operator==(const Polish &) const = default;
};
struct Prompt {
    QString name;
    Overrides overrides;
    QList<TextArgument> text;
    bool operator==(const Prompt &) const = default;
};
/// Preferences by the keys under which they are stored.
struct Settings {
    enum class Action { list, get, set, reset };
    Action action = Action::list;
    QString key;   ///< empty for list
    QString value; ///< in its stored form; empty unless it is set
    bool operator==(const Settings &) const = default;
};
/// API keys.
struct Key {
    enum class Action { set, clear, status };
    Action action = Action::status;
    std::optional<AIProviderType> provider; ///< absent for status
    bool operator==(const Key &) const = default;
};
struct Recognize {
    QString imagePath;
    bool operator==(const Recognize &) const = default;
};
/// Start at login.
struct Autostart {
    enum class Action { on, off, status };
    Action action = Action::status;
    bool operator==(const Autostart &) const = default;
};
/// What the program finds on this desktop.
struct Doctor {
    enum class Reach { machine, network };
    Reach reach = Reach::machine;
    bool operator==(const Doctor &) const = default;
};
struct UsageError {
    QString message; ///< one English line
    bool operator==(const UsageError &) const = default;
};

using Request = std::variant<StartUtility, ShowVersion, ShowHelp, Perform, Translate, Polish, Prompt, Settings, Key,
                             Recognize, Autostart, Doctor, UsageError>;

/// `arguments` without the program's name.
[[nodiscard]] Request parse(const QStringList &arguments);

[[nodiscard]] QString helpText();

} // namespace orvesa::CommandLine
