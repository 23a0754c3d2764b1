#include "service/CommandResponder.h"

#include "service/ServiceAnswers.h"

#include <QProcess>

#include <utility>

namespace orvesa::service {

using namespace Qt::StringLiterals;

Responder commandResponder(QString program, QStringList arguments)
{
    return [program = std::move(program), arguments = std::move(arguments)](const ServiceRequest &request,
                                                                            const Answer &answer) {
        const auto prompt = promptOf(request);
        if (!prompt) {
            answer(protocolResponse(request, {}));
            return;
        }
        auto *process = new QProcess;
        QObject::connect(process, &QProcess::finished, process,
                         [process, request, answer](int exitCode, QProcess::ExitStatus status) {
                             const bool worked = status == QProcess::NormalExit && exitCode == 0;
                             answer(worked
                                        ? protocolResponse(request, QString::fromUtf8(process->readAllStandardOutput()))
                                        : ServiceResponse::text(500, process->readAllStandardError()));
                             process->deleteLater();
                         });
        QObject::connect(process, &QProcess::errorOccurred, process, [process, answer](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                answer(ServiceResponse::text(500, process->errorString().toUtf8()));
                process->deleteLater();
            }
        });
        process->start(program, arguments);
        process->write(textOfPrompt(*prompt).toUtf8());
        process->closeWriteChannel();
    };
}

} // namespace orvesa::service
