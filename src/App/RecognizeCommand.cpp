#include "App/RecognizeCommand.h"

#include "App/StandardStreams.h"
#include "Models/AppError.h"
#include "Models/Text.h"

#include <QStringList>

#include <optional>
#include <stop_token>

namespace orvesa {

using CommandLine::ExitCode;

RecognizeCommand::RecognizeCommand(TextRecognitionPort &recognition) : m_recognition(recognition) {}

QCoro::Task<ExitCode> RecognizeCommand::run(CommandLine::Recognize request) const
{
    const std::optional<QStringList> lines = co_await m_recognition.recognize(request.imagePath, std::stop_token());
    if (!lines) {
        StandardStreams::writeError(AppError(AppError::Kind::ocrCaptureFailed).errorDescription());
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
