#pragma once

// One running process of the program's own text recognition, which is given images on a pipe.
//
// Main thread. Started ahead of the first image, so that its models are loaded when the image comes; ended when nothing
// was asked of it for a while, or with this object. A crash, a hang and rubbish in its answers end it and are an answer
// without text, with one line in the log.

#include "Platform/linux/ChildProcess.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <optional>

namespace orvesa {

class RecognitionWorker final : public QObject {
    Q_OBJECT

public:
    /// `executable` is an absolute path; `keep` is how long it is kept with nothing to do.
    RecognitionWorker(QString executable, std::chrono::milliseconds keep);
    ~RecognitionWorker() override;

    /// Nothing when it runs already, but that it is kept from now on.
    void start();
    /// Starts it when necessary. answered() follows, never before this returns. One image at a time.
    void recognize(const QByteArray &image, std::chrono::milliseconds bound);
    /// Ends it at once, for good. An image that it has is answered without text before this returns.
    void kill();

    [[nodiscard]] bool isBusy() const { return m_busy; }
    /// Whether it can be given another image; one that is ending cannot.
    [[nodiscard]] bool isUsable() const { return !m_ending; }
    [[nodiscard]] qint64 processId() const { return m_process->processId(); }

Q_SIGNALS:
    void answered(const std::optional<QString> &text);

private:
    void readAnswer();
    void finish(const std::optional<QString> &text);
    void fail(const QString &reason);
    void handleEnd();

    QString m_executable;
    ChildProcess m_process = makeChildProcess();
    QTimer m_idle;
    QTimer m_bound;
    QByteArray m_answer;
    bool m_busy = false;
    bool m_ending = false;
};

} // namespace orvesa
