#include "desktop/DisplayPipe.h"

#include "desktop/DesktopOptions.h"
#include "desktop/Waiting.h"

#include <QByteArray>
#include <QSocketNotifier>

#include <array>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

DisplayPipe::DisplayPipe()
{
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw DesktopError(u"no pipe for the display number"_s);
    m_readEnd = pipe[0];
    m_writeEnd = pipe[1];
}

DisplayPipe::~DisplayPipe()
{
    closeWriteEnd();
    ::close(m_readEnd);
}

void DisplayPipe::closeWriteEnd()
{
    if (m_writeEnd >= 0)
        ::close(std::exchange(m_writeEnd, -1));
}

QString DisplayPipe::awaitDisplay(const Process &server)
{
    closeWriteEnd(); // from here on the server has the only one, and its end is the pipe's
    QByteArray number;
    QSocketNotifier notifier(m_readEnd, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        std::array<char, 16> buffer{};
        const ssize_t count = ::read(m_readEnd, buffer.data(), buffer.size());
        if (count > 0)
            number.append(buffer.data(), count);
        else
            notifier.setEnabled(false);
    });
    waitUntil([&] { return number.endsWith('\n') || !server.isRunning(); }, u"the X server"_s);
    if (!number.endsWith('\n'))
        throw DesktopError(u"the X server ended: %1"_s.arg(QString::fromUtf8(server.standardError())));
    return u':' + QString::fromLatin1(number.trimmed());
}

} // namespace orvesa::desktop
