#pragma once

// The page with one section per service. Main thread only.

#include "App/Settings/SettingsServices.h"

#include <QWidget>

namespace orvesa {

class ProviderKeyStatus;

class ProvidersSettingsView final : public QWidget {
    Q_OBJECT

public:
    ProvidersSettingsView(const SettingsServices &services, ProviderKeyStatus &keyStatus, QWidget *parent = nullptr);
};

} // namespace orvesa
