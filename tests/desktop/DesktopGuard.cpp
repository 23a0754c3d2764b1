#include "desktop/DesktopGuard.h"

#include "desktop/Waiting.h"

#include <QProcessEnvironment>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

DesktopGuard::DesktopGuard(const QString &mark, const QString &folder)
{
    m_process.setProcessEnvironment(QProcessEnvironment()); // above all without the mark
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(ORVESA_DESKTOP_GUARD), {mark, folder});
    if (!m_process.waitForStarted())
        throw DesktopError(u"the desktop's guard did not start: %1"_s.arg(m_process.errorString()));
    waitUntil([this] { return m_process.canReadLine() || m_process.state() == QProcess::NotRunning; },
              u"the desktop's guard to be ready"_s);
}

DesktopGuard::~DesktopGuard()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished(-1);
}

void DesktopGuard::add(qint64 group)
{
    tell('+', group);
}

void DesktopGuard::forget(qint64 group)
{
    tell('-', group);
}

void DesktopGuard::tell(char sign, qint64 group)
{
    m_process.write(sign + QByteArray::number(group) + '\n');
    m_process.waitForBytesWritten();
}

} // namespace orvesa::desktop
