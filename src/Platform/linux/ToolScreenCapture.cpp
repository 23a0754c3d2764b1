#include "Platform/linux/ToolScreenCapture.h"

#include "Platform/linux/ToolRun.h"

#include <QCoroSignal>

#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa {

ToolScreenCapture::ToolScreenCapture(QString executable) : m_executable(std::move(executable)) {}

QCoro::Task<bool> ToolScreenCapture::captureInteractively(QString outputPath, std::stop_token stop)
{
    ToolRun tool;
    const QStringList arguments{u"-i"_s, u"-x"_s, outputPath};
    tool.start(m_executable, arguments);
    // Killed rather than asked: the grabs that it holds end with its connection, and it leaves no half-written file.
    const std::stop_callback end(stop, [&tool] { tool.kill(); });
    // The user takes as long as the user takes.
    const bool wasStarted = co_await qCoro(&tool, &ToolRun::ended);
    if (!wasStarted) {
        qWarning("OrvesaTranslate: the screen capture tool cannot be started: %s", qUtf8Printable(tool.errorString()));
    }
    co_return wasStarted;
}

} // namespace orvesa
