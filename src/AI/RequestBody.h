#pragma once

// The body of a request as a device that can be read once.
//
// Qt repeats a request by itself when its connection breaks before the answer. A request that costs money and may have
// been carried out must not be repeated; a body that cannot be rewound makes Qt report the broken connection instead.
// (Reading a list of models again, which Qt may do, does no harm.)
// Main thread; owned by the reply that sends it.

#include <QByteArray>
#include <QIODevice>

namespace orvesa {

class RequestBody final : public QIODevice {
    Q_OBJECT

public:
    RequestBody(QByteArray bytes, QObject *parent);

    [[nodiscard]] qint64 size() const override { return m_bytes.size(); }
    /// Fails once a byte was handed out.
    [[nodiscard]] bool seek(qint64 position) override;

protected:
    [[nodiscard]] qint64 readData(char *data, qint64 length) override;
    [[nodiscard]] qint64 writeData(const char *data, qint64 length) override;

private:
    QByteArray m_bytes;
    qint64 m_read = 0;
};

} // namespace orvesa
