#include "Platform/linux/ToolTextRecognition.h"

#include <QCoroProcess>

#include <QProcess>

namespace orvesa {

ToolTextRecognition::ToolTextRecognition(QString executable, std::chrono::milliseconds bound)
    : m_executable(std::move(executable)), m_bound(bound)
{
}

QCoro::Task<std::optional<QStringList>> ToolTextRecognition::recognize(QString imagePath)
{
    QProcess tool;
    tool.setStandardInputFile(QProcess::nullDevice());
    const QStringList arguments{imagePath};
    if (!co_await qCoro(tool).start(m_executable, arguments)) {
        co_return std::nullopt;
    }
    if (!co_await qCoro(tool).waitForFinished(m_bound)) {
        tool.kill();
        co_return std::nullopt;
    }
    if (tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0) {
        co_return std::nullopt;
    }
    QString text = QString::fromUtf8(tool.readAllStandardOutput());
    if (text.endsWith(u'\n')) {
        text.chop(1);
    }
    co_return text.split(u'\n');
}

} // namespace orvesa
