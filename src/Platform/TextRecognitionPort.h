#pragma once

// Text recognition on an image, off the main thread. Main thread; operations suspend.

#include <QCoroTask>

#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>

namespace orvesa {

class TextRecognitionPort {
public:
    virtual ~TextRecognitionPort() = default;

    /// An image is about to come: what takes time to load may be loaded now.
    virtual void prepare() = 0;

    /// The recognised lines of the image file in reading order; nothing when the file is no readable image, the
    /// recognition failed, or a stop was requested, which ends it.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> recognize(QString imagePath,
                                                                            std::stop_token stop) = 0;
};

} // namespace orvesa
