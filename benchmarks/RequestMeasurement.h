#pragma once

// What a request costs inside the program: until its bytes are with the service, and from the answer to the text.
//
// The product's provider and a floor that does the same with Qt Network alone take turns over kept connections to a
// service in another thread. The key comes from memory, for a key store is another program. Main thread.

#include "ReportTable.h"
#include "Samples.h"

#include "AI/AIProviderFactory.h"
#include "AI/APIHTTPClient.h"
#include "Core/KeychainService.h"
#include "fakes/FakeKeyStore.h"
#include "service/LoopbackService.h"

#include <QNetworkAccessManager>

#include <atomic>

namespace orvesa::benchmark {

class RequestMeasurement final {
public:
    RequestMeasurement();

    /// Measures texts of that many bytes, and adds two rows.
    void measure(ReportTable &table, const QString &size, qsizetype bytes, int rounds);

private:
    struct Times {
        double toService = 0; ///< microseconds
        double toText = 0;
    };

    [[nodiscard]] Times askProduct(const QString &text);
    [[nodiscard]] Times askFloor(const QString &text);
    /// The times of the exchange that began then and has just ended; throws when its text is another one.
    [[nodiscard]] Times times(qint64 begun, const QString &answer, const QString &text) const;

    service::LoopbackService m_service;
    std::atomic<qint64> m_received = 0;
    std::atomic<qint64> m_answered = 0;
    FakeKeyStore m_keyStore;
    KeychainService m_keychain;
    QNetworkAccessManager m_network;
    APIHTTPClient m_client;
    AIProviderFactory m_providers;
    QNetworkAccessManager m_floorNetwork;
};

} // namespace orvesa::benchmark
