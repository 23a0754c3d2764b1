#pragma once

// Lets the user drag out a rectangle of the screen and recognises the text in it. Stateless. Main thread; the ports
// must outlive the service.

#include "Platform/ScreenCapturePort.h"
#include "Platform/TextRecognitionPort.h"

#include <QCoroTask>

#include <QString>

#include <optional>
#include <stop_token>

namespace orvesa {

class OCRService final {
public:
    OCRService(ScreenCapturePort &capture, TextRecognitionPort &recognition);

    /// The recognised text, never blank; nothing when the user cancelled or a stop was requested. Throws AppError:
    /// ocrCaptureFailed or ocrNoTextFound. The screenshot's file is gone when the operation ends, however it ends.
    [[nodiscard]] QCoro::Task<std::optional<QString>> captureAndRecognizeText(std::stop_token stop = {});

    /// Removes the screenshots of an earlier run that was killed in the middle. For the start, before any capture.
    static void removeLeftovers();

private:
    ScreenCapturePort &m_capture;
    TextRecognitionPort &m_recognition;
};

} // namespace orvesa
