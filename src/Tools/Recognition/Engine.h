#pragma once

// One recognition engine with its languages loaded.
//
// An engine may be used by one thread at a time; different engines by different threads. OMP_THREAD_LIMIT=1 must be in
// the environment before the library is loaded: its own threads cost more than they give on pieces as small as these.

#include "Tools/Recognition/GrayImage.h"
#include "Tools/Recognition/Reading.h"

#include <QByteArray>

#include <memory>

namespace tesseract {
class TessBaseAPI;
}

namespace orvesa {

class Engine final {
public:
    enum class Layout { block, line, column };

    /// `languages` as the library names them, joined by '+'; the first one's settings count. Nothing when one of them
    /// is not installed or cannot be read.
    [[nodiscard]] static std::unique_ptr<Engine> load(const QByteArray &languages);
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    [[nodiscard]] Reading read(const GrayImage &image, Layout layout);

private:
    explicit Engine(std::unique_ptr<tesseract::TessBaseAPI> library);

    std::unique_ptr<tesseract::TessBaseAPI> m_library;
};

} // namespace orvesa
