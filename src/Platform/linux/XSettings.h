#pragma once

// The desktop's settings as the X server hands them on ("_XSETTINGS_SETTINGS"). A pure function: any bytes may come in.

#include <QByteArray>

#include <optional>

namespace orvesa::XSettings {

/// The number that a setting has; nothing when there is none of that name, or what was read is broken.
[[nodiscard]] std::optional<qint32> integer(const QByteArray &settings, const QByteArray &name);

} // namespace orvesa::XSettings
