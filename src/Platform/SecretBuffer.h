#pragma once

// Overwriting secrets in memory when they have been used. Any thread.
//
// Qt's texts and byte arrays share their buffers. A buffer is overwritten by whoever lets go of it last; while somebody
// else still holds it, letting go is all that happens. What libraries copied for themselves stays theirs.

#include <QByteArray>
#include <QString>

#include <algorithm>

namespace orvesa {

/// Overwrites the buffer if nobody else holds it, and empties the value.
template <typename Buffer>
void clearSecret(Buffer &secret)
{
    if (secret.isDetached() && !secret.isEmpty()) {
        auto *const begin = secret.data();
        std::fill_n(begin, secret.size(), typename Buffer::value_type());
        // Tells the compiler that somebody may look at the zeros.
        asm volatile("" : : "r"(begin) : "memory");
    }
    secret = Buffer();
}

/// Clears a secret at the end of the scope, however that ends.
template <typename Buffer>
class SecretClearing final {
public:
    explicit SecretClearing(Buffer &secret) : m_secret(secret) {}
    ~SecretClearing() { clearSecret(m_secret); }
    Q_DISABLE_COPY_MOVE(SecretClearing)

private:
    Buffer &m_secret;
};

} // namespace orvesa
