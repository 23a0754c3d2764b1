#pragma once

// One run of a program from its start to its end, as one signal. Main thread.

#include "Platform/linux/ChildProcess.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace orvesa {

class ToolRun final : public QObject {
    Q_OBJECT

public:
    ToolRun();
    ~ToolRun() override;

    /// ended() follows, never before this returns. What the program says on standard output is dropped.
    void start(const QString &executable, const QStringList &arguments);
    void kill();

    [[nodiscard]] QString errorString() const { return m_process->errorString(); }

Q_SIGNALS:
    void ended(bool wasStarted);

private:
    ChildProcess m_process = makeChildProcess();
};

} // namespace orvesa
