#pragma once

// The product's recognition kept running, as the utility keeps it. Blocks; main thread.

#include <QByteArray>
#include <QProcess>
#include <QString>

namespace orvesa::benchmark {

class WarmRecognition final {
public:
    /// Returns when its models are loaded.
    explicit WarmRecognition(const QString &program);
    ~WarmRecognition();
    WarmRecognition(const WarmRecognition &) = delete;
    WarmRecognition &operator=(const WarmRecognition &) = delete;

    [[nodiscard]] QString read(const QByteArray &image);
    /// Most bytes that it has used, shared ones by their share.
    [[nodiscard]] qint64 peakMemory() const { return m_peak; }

private:
    void noteMemory();

    QProcess m_process;
    qint64 m_peak = 0;
};

} // namespace orvesa::benchmark
