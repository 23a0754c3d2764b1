#include "Platform/linux/ToolScreenCapture.h"

#include <QCoroProcess>

#include <QProcess>

#include <chrono>

using namespace Qt::StringLiterals;

namespace orvesa {

ToolScreenCapture::ToolScreenCapture(QString executable) : m_executable(std::move(executable)) {}

QCoro::Task<bool> ToolScreenCapture::captureInteractively(QString outputPath, std::stop_token stop)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    tool.setStandardInputFile(QProcess::nullDevice());
    tool.setStandardOutputFile(QProcess::nullDevice());
    const QStringList arguments{u"-i"_s, u"-x"_s, outputPath};
    if (!co_await qCoro(tool).start(m_executable, arguments)) {
        qWarning("OrvesaTranslate: the screen capture tool cannot be started: %s", qUtf8Printable(tool.errorString()));
        co_return false;
    }
    // Killed rather than asked: the grabs that it holds end with its connection, and it leaves no half-written file.
    const std::stop_callback end(stop, [&tool] { tool.kill(); });
    if (tool.state() != QProcess::NotRunning) {
        // The user takes as long as the user takes.
        co_await qCoro(tool).waitForFinished(std::chrono::milliseconds(-1));
    }
    co_return true;
}

} // namespace orvesa
