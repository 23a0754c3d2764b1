#include "Platform/macos/SystemScreenCapture.h"

#include <QCoroProcess>

#include <QProcess>

#include <chrono>

namespace orvesa {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemScreenCapture::captureInteractively(QString outputPath, std::stop_token stop)
{
    QProcess tool;
    tool.setStandardInputFile(QProcess::nullDevice());
    tool.setStandardOutputFile(QProcess::nullDevice());
    const QString executable = u"/usr/sbin/screencapture"_s;
    const QStringList arguments{u"-i"_s, u"-x"_s, outputPath};
    if (!co_await qCoro(tool).start(executable, arguments)) {
        co_return false;
    }
    const std::stop_callback end(stop, [&tool] { tool.kill(); });
    if (tool.state() != QProcess::NotRunning) {
        // The user takes as long as the user takes.
        co_await qCoro(tool).waitForFinished(std::chrono::milliseconds(-1));
    }
    co_return true;
}

} // namespace orvesa
