#include "RequestMeasurement.h"

#include "service/ServiceAnswers.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;
using service::monotonicNanoseconds;

namespace {

constexpr double nanosecondsPerMicrosecond = 1e3;
constexpr double greatestRatio = 1.2;

const QString model = u"gpt-5.4-mini"_s;

[[nodiscard]] ServiceAddresses addressesAt(const QString &origin)
{
    QProcessEnvironment environment;
    environment.insert(u"OPENAI_BASE_URL"_s, origin + u"/v1"_s);
    return ServiceAddresses(environment);
}

/// Sentences of several writing systems, as they are translated.
[[nodiscard]] QString textOf(qsizetype bytes)
{
    const QString sentence = u"The quick brown fox said: \"Grüße, 狐です。\"\n"_s;
    const qsizetype sentenceBytes = sentence.toUtf8().size();
    return sentence.repeated(std::max<qsizetype>(1, bytes / sentenceBytes)).trimmed();
}

[[nodiscard]] ReportRow rowOf(const QString &title, const Samples &floor, const Samples &product)
{
    return {.title = title,
            .unit = u"us"_s,
            .decimals = 0,
            .floor = floor,
            .product = product,
            .goal = u"<= %1 x floor"_s.arg(greatestRatio),
            .met = product.median() <= greatestRatio * floor.median()};
}

} // namespace

RequestMeasurement::RequestMeasurement()
    : m_keychain(m_keyStore, u"service"_s, {}), m_client(m_network),
      m_providers(m_keychain, m_client, addressesAt(m_service.address()))
{
    m_keyStore.setItem(u"service"_s, keychainAccount(AIProviderType::openAI), "key");
}

void RequestMeasurement::measure(ReportTable &table, const QString &size, qsizetype bytes, int rounds)
{
    const QString text = textOf(bytes);
    const auto response = service::ServiceResponse::json(service::chatCompletionAnswer(text));
    m_service.setResponder([this, response](const service::ServiceRequest &request) {
        m_received = request.completeNanoseconds;
        m_answered = monotonicNanoseconds();
        return response;
    });
    // The first exchange of each opens its connection.
    static_cast<void>(askFloor(text));
    static_cast<void>(askProduct(text));
    Samples floorToService, floorToText, productToService, productToText;
    for (int round = 0; round < rounds; ++round) {
        const Times floor = askFloor(text);
        floorToService.add(floor.toService);
        floorToText.add(floor.toText);
        const Times product = askProduct(text);
        productToService.add(product.toService);
        productToText.add(product.toText);
    }
    table.add(rowOf(u"request of %1 to its bytes at the service"_s.arg(size), floorToService, productToService));
    table.add(rowOf(u"answer of %1 to its text"_s.arg(size), floorToText, productToText));
}

RequestMeasurement::Times RequestMeasurement::askProduct(const QString &text)
{
    AIProviderConfig config;
    config.model = model;
    const auto provider = m_providers.provider(AIProviderType::openAI);
    QString answer;
    QEventLoop loop;
    const AITask task = CustomTask{u"n"_s, u"Translate: {text}"_s};
    const qint64 begun = monotonicNanoseconds();
    const auto ask = [&]() -> QCoro::Task<void> {
        answer = co_await provider->generate(text, task, config);
        loop.quit();
    };
    const QCoro::Task<void> asking = ask();
    loop.exec();
    return times(begun, answer, text);
}

RequestMeasurement::Times RequestMeasurement::askFloor(const QString &text)
{
    QEventLoop loop;
    const qint64 begun = monotonicNanoseconds();
    const QJsonObject message{{u"role"_s, u"user"_s}, {u"content"_s, QString(u"Translate: "_s + text)}};
    const QJsonObject body{{u"model"_s, model}, {u"messages"_s, QJsonArray{message}}};
    QNetworkRequest request(QUrl(m_service.address() + u"/v1/chat/completions"_s));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    request.setRawHeader("Authorization", "Bearer key");
    QNetworkReply *reply = m_floorNetwork.post(request, QJsonDocument(body).toJson(QJsonDocument::Compact));
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    const QJsonObject answer = QJsonDocument::fromJson(reply->readAll()).object();
    const QString content = answer[u"choices"_s][0][u"message"_s][u"content"_s].toString().trimmed();
    reply->deleteLater();
    return times(begun, content, text);
}

RequestMeasurement::Times RequestMeasurement::times(qint64 begun, const QString &answer, const QString &text) const
{
    const qint64 ended = monotonicNanoseconds();
    if (answer != text) {
        throw std::runtime_error("a request was answered with another text");
    }
    return {static_cast<double>(m_received - begun) / nanosecondsPerMicrosecond,
            static_cast<double>(ended - m_answered) / nanosecondsPerMicrosecond};
}

} // namespace orvesa::benchmark
