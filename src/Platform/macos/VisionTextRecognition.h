#pragma once

// Text recognition by the Vision framework.
//
// Main thread; the recognition itself runs in a thread of its own, which owns everything it uses.

#include "Platform/TextRecognitionPort.h"

#include <chrono>

namespace orvesa {

class VisionTextRecognition final : public TextRecognitionPort {
public:
    /// A screen full of text takes seconds; what takes longer than this has run away.
    static constexpr std::chrono::milliseconds bound = std::chrono::seconds(60);

    /// Vision loads what it needs with the first request, and keeps it.
    void prepare() override {}
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> recognize(QString imagePath, std::stop_token stop) override;
};

} // namespace orvesa
