#include "Platform/linux/ToolScreenCapture.h"

#include <QCoroProcess>

#include <QProcess>

#include <chrono>

using namespace Qt::StringLiterals;

namespace orvesa {

ToolScreenCapture::ToolScreenCapture(QString executable) : m_executable(std::move(executable)) {}

QCoro::Task<bool> ToolScreenCapture::captureInteractively(QString outputPath)
{
    QProcess tool;
    tool.setStandardInputFile(QProcess::nullDevice());
    tool.setStandardOutputFile(QProcess::nullDevice());
    const QStringList arguments{u"-i"_s, u"-x"_s, outputPath};
    if (!co_await qCoro(tool).start(m_executable, arguments)) {
        co_return false;
    }
    // The user takes as long as the user takes.
    co_await qCoro(tool).waitForFinished(std::chrono::milliseconds(-1));
    co_return true;
}

} // namespace orvesa
