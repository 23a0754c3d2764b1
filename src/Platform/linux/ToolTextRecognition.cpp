#include "Platform/linux/ToolTextRecognition.h"

#include "Platform/linux/ImageFile.h"
#include "Platform/linux/RecognitionWorker.h"

#include <QCoroSignal>

#include <utility>

namespace orvesa {

ToolTextRecognition::ToolTextRecognition(QString executable) : ToolTextRecognition(std::move(executable), Bounds()) {}

ToolTextRecognition::ToolTextRecognition(QString executable, Bounds bounds)
    : m_executable(std::move(executable)), m_bounds(bounds)
{
}

ToolTextRecognition::~ToolTextRecognition() = default;

RecognitionWorker &ToolTextRecognition::worker()
{
    if (m_worker && (m_worker->isBusy() || !m_worker->isUsable())) {
        // Whoever still waits for it has been told to stop, or is late; the image that is wanted now comes first.
        m_worker->kill();
        m_worker.release()->deleteLater();
    }
    if (!m_worker) {
        m_worker = std::make_unique<RecognitionWorker>(m_executable, m_bounds.keep);
    }
    return *m_worker;
}

void ToolTextRecognition::prepare()
{
    if (m_worker && m_worker->isBusy()) {
        return;
    }
    worker().start();
}

QCoro::Task<std::optional<QStringList>> ToolTextRecognition::recognize(QString imagePath, std::stop_token stop)
{
    const ImageFile file = readImageFile(imagePath);
    if (!file.failure.isEmpty()) {
        qWarning("OrvesaTranslate: text recognition: %s", qUtf8Printable(file.failure));
        co_return std::nullopt;
    }
    const double millionPixels = static_cast<double>(file.size.width()) * file.size.height() / 1e6;
    const auto bound = m_bounds.least +
                       std::chrono::duration_cast<std::chrono::milliseconds>(m_bounds.forMillionPixels * millionPixels);
    RecognitionWorker &asked = worker();
    const std::stop_callback end(stop, [&asked] { asked.kill(); });
    asked.recognize(file.bytes, bound);
    const std::optional<QString> text = co_await qCoro(&asked, &RecognitionWorker::answered);
    if (!text) {
        co_return std::nullopt;
    }
    QStringList lines;
    if (!text->isEmpty()) {
        lines = text->split(u'\n');
    }
    co_return lines;
}

qint64 ToolTextRecognition::workerProcess() const
{
    return m_worker ? m_worker->processId() : 0;
}

} // namespace orvesa
