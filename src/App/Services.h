#pragma once

// The services that the utility and the command line share, built over the ports. Needs a core application, no display.
// Main thread; the ports must outlive it.

#include "AI/AIProviderFactory.h"
#include "AI/APIHTTPClient.h"
#include "AI/SystemProxies.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"

#include <QNetworkAccessManager>

namespace orvesa {

struct Services {
    Services(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages, KeyStorePort &keyStore);

    SettingsStore settings;
    KeychainService keychain;
    QNetworkAccessManager network;
    SystemProxies proxies;
    APIHTTPClient client;
    AIProviderFactory providers;
};

} // namespace orvesa
