#pragma once

// The one-time carry-over of the preferences that earlier releases kept in domains of their own.
//
// Runs at process start, before the settings store reads anything. The earlier domains are read and never changed. Main
// thread, like the preferences database; no state but the marker in that database.

#include "Platform/UserDefaultsPort.h"

#include <QStringList>

#include <vector>

namespace orvesa::LegacyMigration {

/// True in the program's own domain once the migration has run, whether or not there was anything to copy.
inline constexpr QLatin1StringView markerKey("migration.copiedFromLegacyDomain");

/// Copies every "settings." value that the program's own domain lacks, the first dictionary's before the second's.
/// Nothing when the marker is set.
void migrateUserDefaultsIfNeeded(UserDefaultsPort &defaults, const std::vector<DefaultsDictionary> &legacyDomainValues);

/// The same with the values of those of the domains that exist, in this order. With the marker set no domain is read.
void migrateUserDefaultsIfNeeded(UserDefaultsPort &defaults, const QStringList &legacyDomains);

} // namespace orvesa::LegacyMigration
