#pragma once

// A prompt of the user's own. Value type, any thread; shownName() main thread only.

#include "Models/AITask.h"
#include "Models/KeyCombo.h"

#include <nlohmann/json_fwd.hpp>

#include <QString>
#include <QUuid>

#include <optional>

namespace orvesa {

struct CustomPrompt {
    QUuid id = QUuid::createUuid();
    QString name;                   ///< may be empty
    QString promptTemplate;         ///< may hold the marker "{text}"
    std::optional<KeyCombo> hotKey; ///< the global shortcut that runs the prompt

    bool operator==(const CustomPrompt &) const = default;

    /// The name without outer blanks, or the localized "Untitled Prompt" when nothing is left.
    [[nodiscard]] QString shownName() const;
    /// The task that runs this prompt.
    [[nodiscard]] AITask task() const;
};

/// Keys "id" (upper-case UUID text), "name", "template", and "hotKey" when there is one.
[[nodiscard]] nlohmann::ordered_json customPromptToJSON(const CustomPrompt &prompt);
/// Throws DecodingError; "hotKey" may be missing or null, the others are required.
[[nodiscard]] CustomPrompt customPromptFromJSON(const nlohmann::ordered_json &json);

} // namespace orvesa
