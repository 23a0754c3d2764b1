#include "AI/ServiceAddresses.h"

#include "AI/LoopbackHost.h"
#include "Models/AppError.h"

#include <QUrl>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// How much of the public address an override replaces.
enum class Extent { wholeBase, origin };

struct ServiceAddressRow {
    AIProviderType type;
    const char16_t *publicBase;
    const char16_t *variable;
    Extent extent;
};

constexpr std::array<ServiceAddressRow, 4> serviceAddressRows{{
    {AIProviderType::openAI, u"https://api.openai.com/v1", u"OPENAI_BASE_URL", Extent::wholeBase},
    {AIProviderType::gemini, u"https://generativelanguage.googleapis.com", u"GOOGLE_GEMINI_BASE_URL", Extent::origin},
    {AIProviderType::anthropic, u"https://api.anthropic.com", u"ANTHROPIC_BASE_URL", Extent::origin},
    {AIProviderType::xAI, u"https://api.x.ai/v1", u"XAI_BASE_URL", Extent::wholeBase},
}};

[[nodiscard]] const ServiceAddressRow &addressRow(AIProviderType type)
{
    for (const ServiceAddressRow &row : serviceAddressRows) {
        if (row.type == type) {
            return row;
        }
    }
    Q_UNREACHABLE();
}

[[nodiscard]] bool isAllowed(const QUrl &url)
{
    const bool protectedOnTheWay = url.scheme() == "https"_L1 || (url.scheme() == "http"_L1 && hasLoopbackHost(url));
    // User information would be sent as credentials of its own; a query or fragment would swallow the path that
    // follows.
    return url.isValid() && protectedOnTheWay && !url.host().isEmpty() && url.userInfo().isEmpty() && !url.hasQuery() &&
           !url.hasFragment();
}

} // namespace

ServiceAddresses::ServiceAddresses(const QProcessEnvironment &environment)
{
    for (const ServiceAddressRow &row : serviceAddressRows) {
        QString value = environment.value(QString::fromUtf16(row.variable)).trimmed();
        // A variable set to nothing is how scripts take an override back.
        if (!value.isEmpty()) {
            m_overrides.emplace(row.type, std::move(value));
        }
    }
}

QString ServiceAddresses::base(AIProviderType type) const
{
    const ServiceAddressRow &row = addressRow(type);
    const auto found = m_overrides.find(type);
    if (found == m_overrides.end()) {
        return QString::fromUtf16(row.publicBase);
    }
    QUrl url(found->second, QUrl::StrictMode);
    if (!isAllowed(url)) {
        // The value itself stays out of the message: somebody may have put a secret into it.
        throw AppError::apiRequestFailed(
            QString::fromUtf16(row.variable) +
            u" must be an https address, or an http address of this computer (such as http://127.0.0.1:8080)."_s);
    }
    if (row.extent == Extent::origin) {
        url.setPath({});
    }
    QString base = QString::fromLatin1(url.toEncoded());
    while (base.endsWith(u'/')) {
        base.chop(1);
    }
    return base;
}

} // namespace orvesa
