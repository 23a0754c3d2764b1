#pragma once

// The ground of all tests that go over real HTTP: a loopback service and a client with a short time-out.

#include "AI/APIHTTPClient.h"
#include "AI/Outcome.h"
#include "service/LoopbackService.h"

#include <gtest/gtest.h>

#include <QNetworkAccessManager>

#include <chrono>

namespace orvesa {

class HTTPTest : public ::testing::Test {
protected:
    using Service = service::LoopbackService;
    using Response = service::ServiceResponse;
    using Request = service::ServiceRequest;

    [[nodiscard]] QUrl url(const QString &path = QStringLiteral("/answer")) const
    {
        return QUrl(m_service.address() + path);
    }

    [[nodiscard]] Outcome<QByteArray> get(const APIHTTPClient::Headers &headers = {})
    {
        return outcome(m_client.get(url(), headers));
    }

    [[nodiscard]] Outcome<QByteArray> post(const QByteArray &body, const APIHTTPClient::Headers &headers = {})
    {
        return outcome(m_client.postJSON(url(), headers, body));
    }

    /// What a GET ends with when the service answers like this.
    [[nodiscard]] Outcome<QByteArray> answered(const Response &response)
    {
        m_service.setScript({response});
        return get();
    }

    Service m_service;
    QNetworkAccessManager m_manager;
    APIHTTPClient m_client{m_manager, std::chrono::seconds(5)};
};

} // namespace orvesa
