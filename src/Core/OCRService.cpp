#include "Core/OCRService.h"

#include "Models/AppError.h"
#include "Models/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

const QString filePrefix = u"kestrovander-ocr-"_s;
const QString fileSuffix = u".png"_s;

} // namespace

OCRService::OCRService(ScreenCapturePort &capture, TextRecognitionPort &recognition)
    : m_capture(capture), m_recognition(recognition)
{
}

QCoro::Task<std::optional<QString>> OCRService::captureAndRecognizeText(std::stop_token stop)
{
    const QString path = QDir::tempPath() + u'/' + filePrefix +
                         QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + fileSuffix;
    const auto cleanUp = qScopeGuard([&] { QFile::remove(path); });
    // Loaded while the user drags, so that nobody waits for it.
    m_recognition.prepare();
    if (!co_await m_capture.captureInteractively(path, stop)) {
        throw AppError(AppError::Kind::ocrCaptureFailed);
    }
    const QFileInfo file(path);
    if (stop.stop_requested() || (!file.exists() && !file.isSymLink())) {
        co_return std::nullopt;
    }
    // Whatever else is in the file's place was not put there by the tool.
    if (file.isSymLink() || !file.isFile()) {
        throw AppError(AppError::Kind::ocrCaptureFailed);
    }
    const std::optional<QStringList> lines = co_await m_recognition.recognize(path, stop);
    if (stop.stop_requested()) {
        co_return std::nullopt;
    }
    if (!lines) {
        throw AppError(AppError::Kind::ocrCaptureFailed);
    }
    const QString text = lines->join(u'\n');
    if (isBlank(text)) {
        throw AppError(AppError::Kind::ocrNoTextFound);
    }
    co_return text;
}

void OCRService::removeLeftovers()
{
    static const QRegularExpression identifier(u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
    QDir folder(QDir::tempPath());
    const QStringList names =
        folder.entryList({filePrefix + u'*' + fileSuffix}, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString &name : names) {
        const QString middle = name.sliced(filePrefix.size()).chopped(fileSuffix.size());
        if (identifier.match(middle).hasMatch()) {
            folder.remove(name);
        }
    }
}

} // namespace orvesa
