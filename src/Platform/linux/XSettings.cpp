#include "Platform/linux/XSettings.h"

#include <QtEndian>

namespace orvesa::XSettings {

namespace {

enum Type : quint8 { integerType = 0, stringType = 1, colorType = 2 };

/// Takes numbers and spans from the front of the bytes, and nothing once they are used up.
class Reader final {
public:
    explicit Reader(const QByteArray &bytes) : m_bytes(bytes), m_isBigEndian(bytes.startsWith('\1')) {}

    [[nodiscard]] bool isBroken() const { return m_isBroken; }

    QByteArray span(qsizetype length)
    {
        if (length < 0 || length > m_bytes.size() - m_place) {
            m_isBroken = true;
            return {};
        }
        QByteArray taken = m_bytes.sliced(m_place, length);
        m_place += length;
        return taken;
    }

    template <typename Number>
    Number number()
    {
        const QByteArray taken = span(sizeof(Number));
        if (m_isBroken) {
            return 0;
        }
        return m_isBigEndian ? qFromBigEndian<Number>(taken.constData()) : qFromLittleEndian<Number>(taken.constData());
    }

private:
    const QByteArray m_bytes;
    const bool m_isBigEndian;
    qsizetype m_place = 0;
    bool m_isBroken = false;
};

qsizetype padded(qsizetype length)
{
    constexpr qsizetype word = 4;
    return (length + word - 1) / word * word;
}

} // namespace

std::optional<qint32> integer(const QByteArray &settings, const QByteArray &name)
{
    constexpr qsizetype head = 8;       // byte order, padding, serial number
    constexpr qsizetype colorBytes = 8; // four components
    Reader reader(settings);
    reader.span(head);
    for (auto left = reader.number<quint32>(); left > 0 && !reader.isBroken(); --left) {
        const auto type = reader.number<quint8>();
        reader.span(1);
        const qsizetype length = reader.number<quint16>();
        const QByteArray found = reader.span(padded(length)).first(reader.isBroken() ? 0 : length);
        reader.number<quint32>(); // of the last change
        if (type == integerType) {
            const auto value = static_cast<qint32>(reader.number<quint32>());
            if (found == name && !reader.isBroken()) {
                return value;
            }
        } else if (type == stringType) {
            reader.span(padded(qsizetype{reader.number<quint32>()}));
        } else if (type == colorType) {
            reader.span(colorBytes);
        } else {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace orvesa::XSettings
