#include "App/Settings/ProvidersSettingsView.h"

#include "App/Settings/ProviderSettingsSection.h"
#include "UI/Style.h"

#include <QVBoxLayout>

namespace orvesa {

ProvidersSettingsView::ProvidersSettingsView(const SettingsServices &services, ProviderKeyStatus &keyStatus,
                                             QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Style::contentMargin);
    for (const AIProviderType type : allCases<AIProviderType>()) {
        column->addWidget(new ProviderSettingsSection(type, services, keyStatus, this));
    }
    column->addStretch();
}

} // namespace orvesa
