#pragma once

// Text recognition on an image, off the main thread. Main thread; operations suspend.

#include <QCoroTask>

#include <QString>
#include <QStringList>

#include <optional>

namespace orvesa {

class TextRecognitionPort {
public:
    virtual ~TextRecognitionPort() = default;

    /// The recognised lines of the image file in reading order; nothing when the file is no readable image or the
    /// recognition failed.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> recognize(QString imagePath) = 0;
};

} // namespace orvesa
