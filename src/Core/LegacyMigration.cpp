#include "Core/LegacyMigration.h"

#include "Core/SettingsValues.h"

#include <utility>

namespace orvesa::LegacyMigration {

void migrateUserDefaultsIfNeeded(UserDefaultsPort &defaults, const std::vector<DefaultsDictionary> &legacyDomainValues)
{
    if (storedBoolean(defaults, markerKey)) {
        return;
    }
    // First of all, so that it is tried once at most, whatever happens below.
    defaults.set(markerKey, true);
    for (const DefaultsDictionary &domain : legacyDomainValues) {
        for (const auto &[key, value] : domain) {
            if (key.startsWith(SettingsKey::prefix) && !defaults.value(key)) {
                defaults.set(key, value);
            }
        }
    }
}

void migrateUserDefaultsIfNeeded(UserDefaultsPort &defaults, const QStringList &legacyDomains)
{
    if (storedBoolean(defaults, markerKey)) {
        return;
    }
    std::vector<DefaultsDictionary> values;
    for (const QString &domain : legacyDomains) {
        if (auto found = defaults.persistentDomain(domain)) {
            values.push_back(*std::move(found));
        }
    }
    migrateUserDefaultsIfNeeded(defaults, values);
}

} // namespace orvesa::LegacyMigration
