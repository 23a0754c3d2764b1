#include "App/Services.h"

#include "App/BuildIdentity.h"

namespace orvesa {

namespace {

QString text(std::u16string_view view)
{
    return QStringView(view).toString();
}

} // namespace

Services::Services(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages, KeyStorePort &keyStore)
    : settings(defaults, languages),
      keychain(keyStore, text(BuildIdentity::bundleIdentifier),
               {text(BuildIdentity::firstLegacyIdentifier), text(BuildIdentity::secondLegacyIdentifier)}),
      proxies(network), client(network, APIHTTPClient::defaultTimeout, &proxies),
      providers(keychain, client, ServiceAddresses(QProcessEnvironment::systemEnvironment()))
{
}

} // namespace orvesa
