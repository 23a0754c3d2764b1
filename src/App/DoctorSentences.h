#pragma once

// The sentences of the page for bug reports: for everything that can be found, what it means and what to do. Pure
// functions, any thread. No sentence repeats a text from outside, but for the desktop's name.

#include "AI/AIProviderType.h"
#include "AI/ServiceReach.h"
#include "App/DoctorReport.h"
#include "Platform/DesktopInspectionPort.h"

#include <QStringList>

#include <optional>

namespace orvesa::DoctorSentences {

[[nodiscard]] DoctorFinding session(DesktopInspectionPort::Session session, bool hasDisplay,
                                    const QString &desktopName);
[[nodiscard]] DoctorFinding accessibility(DesktopInspectionPort::Accessibility state);
[[nodiscard]] DoctorFinding keyStore(DesktopInspectionPort::KeyStore state);
/// No value means that the store did not give an answer.
[[nodiscard]] DoctorFinding key(AIProviderType type, std::optional<bool> isStored);
[[nodiscard]] DoctorFinding keyNotLookedFor(AIProviderType type);
[[nodiscard]] DoctorFinding tray(DesktopInspectionPort::Tray tray);
[[nodiscard]] DoctorFinding utility(bool isRunning);
/// A shortcut that the running utility does not hold, by what the keyboard answers when it is asked for.
[[nodiscard]] DoctorFinding shortcut(const QString &subject, qint32 status, bool isUtilityRunning);
/// The same in a Wayland session, where the desktop's portal gives shortcuts out.
[[nodiscard]] DoctorFinding portalShortcut(const QString &subject, bool hasPortal);
[[nodiscard]] DoctorFinding screenCapture(DesktopInspectionPort::ScreenCapture state);
/// The packages that are missing; nothing when recognition does not work at all.
[[nodiscard]] DoctorFinding recognition(const std::optional<QStringList> &missing);
[[nodiscard]] DoctorFinding network(const QString &service, const ServiceReach::Result &result);

} // namespace orvesa::DoctorSentences
