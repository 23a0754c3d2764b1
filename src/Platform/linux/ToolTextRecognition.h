#pragma once

// The program's own text recognition, run as a child process so that its weight and its failures stay outside. Main
// thread.

#include "Platform/TextRecognitionPort.h"

#include <chrono>

namespace orvesa {

class ToolTextRecognition final : public TextRecognitionPort {
public:
    /// A screen full of text takes seconds; what takes longer than this has run away.
    static constexpr std::chrono::milliseconds defaultBound = std::chrono::seconds(60);

    /// `executable` is an absolute path.
    explicit ToolTextRecognition(QString executable, std::chrono::milliseconds bound = defaultBound);

    [[nodiscard]] QCoro::Task<std::optional<QStringList>> recognize(QString imagePath) override;

private:
    QString m_executable;
    std::chrono::milliseconds m_bound;
};

} // namespace orvesa
