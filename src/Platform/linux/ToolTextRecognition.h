#pragma once

// The program's own text recognition, run as a child process so that its weight and its failures stay outside. Main
// thread.

#include "Platform/TextRecognitionPort.h"

#include <chrono>
#include <memory>

namespace orvesa {

class RecognitionWorker;

class ToolTextRecognition final : public TextRecognitionPort {
public:
    struct Bounds {
        std::chrono::milliseconds keep = std::chrono::minutes(1); ///< of a worker with nothing to do
        std::chrono::milliseconds least = std::chrono::seconds(20);
        /// More for each million pixels. A screen full of text takes a few seconds; what takes much longer has run
        /// away.
        std::chrono::milliseconds forMillionPixels = std::chrono::seconds(10);
    };

    /// `executable` is an absolute path.
    explicit ToolTextRecognition(QString executable);
    ToolTextRecognition(QString executable, Bounds bounds);
    ~ToolTextRecognition() override;

    void prepare() override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> recognize(QString imagePath, std::stop_token stop) override;

    /// The process that is kept; 0 for none.
    [[nodiscard]] qint64 workerProcess() const;

private:
    RecognitionWorker &worker();

    QString m_executable;
    Bounds m_bounds;
    std::unique_ptr<RecognitionWorker> m_worker;
};

} // namespace orvesa
