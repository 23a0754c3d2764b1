#include "Platform/linux/RecognitionWorker.h"

#include <QProcessEnvironment>

#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr qsizetype mostText = qsizetype{8} * 1024 * 1024;
constexpr qsizetype longestHeader = 1024;

} // namespace

RecognitionWorker::RecognitionWorker(QString executable, std::chrono::milliseconds keep)
    : m_executable(std::move(executable))
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(keep);
    m_bound.setSingleShot(true);
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &RecognitionWorker::readAnswer);
    // Queued: a start that fails says so before start() returns.
    connect(m_process.get(), &QProcess::errorOccurred, this, &RecognitionWorker::handleEnd, Qt::QueuedConnection);
    connect(m_process.get(), &QProcess::finished, this, &RecognitionWorker::handleEnd, Qt::QueuedConnection);
    connect(&m_bound, &QTimer::timeout, this, [this] { fail(u"it took too long"_s); });
    // It ends by itself when its input does; by force if it is still there when it has been idle for as long again.
    connect(&m_idle, &QTimer::timeout, this, [this] {
        if (!m_ending) {
            m_ending = true;
            m_process->closeWriteChannel();
            m_idle.start();
        } else if (m_process->state() != QProcess::NotRunning) {
            m_process->kill();
        }
    });
}

RecognitionWorker::~RecognitionWorker() = default;

void RecognitionWorker::start()
{
    if (m_process->state() == QProcess::NotRunning) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"OMP_THREAD_LIMIT"_s, u"1"_s);
        m_process->setProcessEnvironment(environment);
        m_process->start(m_executable, {u"--serve"_s});
    }
    m_idle.start();
}

void RecognitionWorker::recognize(const QByteArray &image, std::chrono::milliseconds bound)
{
    m_busy = true;
    m_answer.clear();
    start();
    m_idle.stop();
    m_bound.start(bound);
    m_process->write("IMAGE " + QByteArray::number(image.size()) + '\n');
    m_process->write(image);
}

void RecognitionWorker::kill()
{
    m_ending = true;
    m_idle.stop();
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
    }
    if (m_busy) {
        finish(std::nullopt);
    }
}

void RecognitionWorker::readAnswer()
{
    m_answer += m_process->readAllStandardOutput();
    const qsizetype end = m_answer.indexOf('\n');
    if (!m_busy || (end < 0 && m_answer.size() > longestHeader)) {
        fail(u"it said what is no answer"_s);
        return;
    }
    if (end < 0) {
        return;
    }
    const QByteArray header = m_answer.first(end);
    if (header.startsWith("FAILED ")) {
        qWarning("OrvesaTranslate: text recognition: %s", header.sliced(7).constData());
        finish(std::nullopt);
        return;
    }
    bool isNumber = false;
    const qsizetype count = header.startsWith("TEXT ") ? header.sliced(5).toLongLong(&isNumber) : -1;
    if (!isNumber || count < 0 || count > mostText || m_answer.size() > end + 1 + count) {
        fail(u"it said what is no answer"_s);
    } else if (m_answer.size() == end + 1 + count) {
        finish(QString::fromUtf8(m_answer.sliced(end + 1)));
    }
}

void RecognitionWorker::finish(const std::optional<QString> &text)
{
    m_busy = false;
    m_bound.stop();
    m_answer.clear();
    if (!m_ending) {
        m_idle.start();
    }
    Q_EMIT answered(text);
}

void RecognitionWorker::fail(const QString &reason)
{
    qWarning("OrvesaTranslate: text recognition failed: %s", qUtf8Printable(reason));
    kill();
}

void RecognitionWorker::handleEnd()
{
    if (m_process->state() != QProcess::NotRunning) {
        return;
    }
    m_ending = true;
    m_idle.stop();
    if (m_busy) {
        qWarning("OrvesaTranslate: text recognition ended without an answer: %s",
                 qUtf8Printable(m_process->errorString()));
        finish(std::nullopt);
    }
}

} // namespace orvesa
