#pragma once

// One piece of work on a text: translate it, polish it, or run a prompt of the user's own on it.
// Value type, any thread; displayName() main thread only.

#include "Models/PolishMode.h"

#include <nlohmann/json_fwd.hpp>

#include <QString>

#include <variant>

namespace orvesa {

struct TranslateTask {
    /// A TargetLanguage's raw value, or the name of any other language.
    QString targetLanguage;
    bool operator==(const TranslateTask &) const = default;
};

struct PolishTask {
    PolishMode mode = PolishMode::businessJapanese;
    bool operator==(const PolishTask &) const = default;
};

struct CustomTask {
    QString name;           ///< shown as the title, already replaced when the prompt has no name
    QString promptTemplate; ///< may hold the marker "{text}"
    bool operator==(const CustomTask &) const = default;
};

using AITask = std::variant<TranslateTask, PolishTask, CustomTask>;

/// The title of the task in the current interface language.
[[nodiscard]] QString displayName(const AITask &task);

/// An object with one member, named after the case, that holds the payload.
[[nodiscard]] nlohmann::ordered_json aiTaskToJSON(const AITask &task);
/// Throws DecodingError when the shape is another one.
[[nodiscard]] AITask aiTaskFromJSON(const nlohmann::ordered_json &json);

} // namespace orvesa
