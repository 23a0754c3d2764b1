#pragma once

// A certificate authority of our own and one certificate issued by it, made afresh in memory at every start. Only the
// authority's certificate is written to a file, for programs that have to be told whom to trust; no key ever is.

#include <QHostAddress>
#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QTemporaryDir>

namespace orvesa::service {

class ServiceCertificate final {
public:
    /// A certificate for "localhost", "service.test", 127.0.0.1, ::1 and one more address, valid for a day.
    explicit ServiceCertificate(const QHostAddress &address = QHostAddress(QHostAddress::LocalHost));

    [[nodiscard]] const QSslCertificate &authority() const noexcept { return m_authority; }
    [[nodiscard]] const QSslCertificate &certificate() const noexcept { return m_certificate; }
    [[nodiscard]] const QSslKey &privateKey() const noexcept { return m_privateKey; }
    /// The authority's certificate as a PEM file, there as long as this object is.
    [[nodiscard]] QString authorityPath() const;

private:
    QTemporaryDir m_folder;
    QSslCertificate m_authority;
    QSslCertificate m_certificate;
    QSslKey m_privateKey;
};

} // namespace orvesa::service
