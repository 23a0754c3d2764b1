#include "ocr/WarmRecognition.h"

#include "ProcessFigures.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr int longestAnswer = 120'000; // milliseconds

} // namespace

WarmRecognition::WarmRecognition(const QString &program)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"OMP_THREAD_LIMIT"_s, u"1"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, {u"--serve"_s});
    QImage blank(64, 32, QImage::Format_RGB32);
    blank.fill(Qt::white);
    QBuffer buffer;
    blank.save(&buffer, "png");
    (void)read(buffer.data());
}

WarmRecognition::~WarmRecognition()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

void WarmRecognition::noteMemory()
{
    constexpr double megabyte = 1e6;
    m_peak = std::max(m_peak, static_cast<qint64>(memoryOf(m_process.processId()).proportionalMegabytes * megabyte));
}

QString WarmRecognition::read(const QByteArray &image)
{
    m_process.write("IMAGE " + QByteArray::number(image.size()) + '\n' + image);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(longestAnswer)) {
            throw std::runtime_error("the recognition gave no answer");
        }
    }
    const QByteArray header = m_process.readLine().trimmed();
    if (!header.startsWith("TEXT ")) {
        throw std::runtime_error("the recognition said: " + header.toStdString());
    }
    const qint64 count = header.sliced(5).toLongLong();
    while (m_process.bytesAvailable() < count) {
        if (!m_process.waitForReadyRead(longestAnswer)) {
            throw std::runtime_error("the recognition's answer is not whole");
        }
    }
    QString text = QString::fromUtf8(m_process.read(count));
    noteMemory();
    return text;
}

} // namespace orvesa::benchmark
