#include "Platform/linux/ToolRun.h"

namespace orvesa {

ToolRun::ToolRun()
{
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->setStandardInputFile(QProcess::nullDevice());
    m_process->setStandardOutputFile(QProcess::nullDevice());
    // Queued: a program that is not there can be reported before start() returns.
    connect(
        m_process.get(), &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                Q_EMIT ended(false);
            }
        },
        Qt::QueuedConnection);
    connect(
        m_process.get(), &QProcess::finished, this, [this] { Q_EMIT ended(true); }, Qt::QueuedConnection);
}

ToolRun::~ToolRun() = default;

void ToolRun::start(const QString &executable, const QStringList &arguments)
{
    m_process->start(executable, arguments);
}

void ToolRun::kill()
{
    m_process->kill();
}

} // namespace orvesa
