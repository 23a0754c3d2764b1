#include "AI/ErrorText.h"

#include "AI/APIHTTPClient.h"

#include <QStringDecoder>

#include <utility>

namespace orvesa {

namespace {

TransferWording &desktopWording()
{
    static TransferWording wording;
    return wording;
}

} // namespace

void setTransferWording(TransferWording wording)
{
    desktopWording() = std::move(wording);
}

QString platformErrorText(QNetworkReply::NetworkError error, const QString &qtText)
{
    const TransferWording &wording = desktopWording();
    const QString words = wording ? wording(error) : QString();
    return words.isEmpty() ? qtText : words;
}

QString errorText(const QByteArray &body)
{
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    const QString text =
        decoder.decode(QByteArrayView(body).first(qMin(body.size(), APIHTTPClient::maximumErrorBytes)));
    return decoder.hasError() ? QString() : text;
}

QString transferErrorText(const QString &platformText, const QUrl &url)
{
    QString text = platformText.simplified();
    if (url.hasQuery()) {
        text.remove(u'?' + url.query(QUrl::FullyEncoded));
        text.remove(u'?' + url.query(QUrl::PrettyDecoded));
    }
    return text;
}

} // namespace orvesa
