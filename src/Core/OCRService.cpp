#include "Core/OCRService.h"

#include "Models/AppError.h"
#include "Models/Text.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace orvesa {

OCRService::OCRService(ScreenCapturePort &capture, TextRecognitionPort &recognition)
    : m_capture(capture), m_recognition(recognition)
{
}

QCoro::Task<std::optional<QString>> OCRService::captureAndRecognizeText()
{
    const QString path = QDir::tempPath() + u"/kestrovander-ocr-"_s +
                         QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + u".png"_s;
    const auto cleanUp = qScopeGuard([&] { QFile::remove(path); });
    if (!co_await m_capture.captureInteractively(path)) {
        throw AppError(AppError::Kind::ocrCaptureFailed);
    }
    if (!QFile::exists(path)) {
        co_return std::nullopt;
    }
    const std::optional<QStringList> lines = co_await m_recognition.recognize(path);
    if (!lines) {
        throw AppError(AppError::Kind::ocrCaptureFailed);
    }
    const QString text = lines->join(u'\n');
    if (isBlank(text)) {
        throw AppError(AppError::Kind::ocrNoTextFound);
    }
    co_return text;
}

} // namespace orvesa
