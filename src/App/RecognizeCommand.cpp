#include "App/RecognizeCommand.h"

#include "App/StandardStreams.h"
#include "Models/AppError.h"
#include "Models/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QStringList>

#include <optional>
#include <stop_token>

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;

namespace {

/// Whether there is something in the file's place that can be read without waiting for anybody.
bool isReadable(const QString &path)
{
    return QFileInfo(path).isFile() && QFile(path).open(QIODevice::ReadOnly);
}

} // namespace

RecognizeCommand::RecognizeCommand(TextRecognitionPort &recognition) : m_recognition(recognition) {}

QCoro::Task<ExitCode> RecognizeCommand::run(CommandLine::Recognize request) const
{
    if (!isReadable(request.imagePath)) {
        StandardStreams::writeError(u"The image “%1” could not be read."_s.arg(request.imagePath));
        co_return ExitCode::failure;
    }
    const std::optional<QStringList> lines = co_await m_recognition.recognize(request.imagePath, std::stop_token());
    if (!lines) {
        const bool isImage = QImageReader(request.imagePath).canRead();
        StandardStreams::writeError(
            isImage
                ? u"The image could not be recognized; \"orvesa-translate doctor\" says whether something is missing."_s
                : u"The file “%1” is no image that can be read."_s.arg(request.imagePath));
        co_return ExitCode::failure;
    }
    const QString text = lines->join(u'\n');
    if (isBlank(text)) {
        StandardStreams::writeError(AppError(AppError::Kind::ocrNoTextFound).errorDescription());
        co_return ExitCode::failure;
    }
    co_return StandardStreams::writeOutput(text) ? ExitCode::success : ExitCode::failure;
}

} // namespace orvesa
