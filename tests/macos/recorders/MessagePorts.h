#pragma once

// The stand-in for message ports and the main run loop. Main thread.

#include <CoreFoundation/CoreFoundation.h>

#include <QByteArray>
#include <QString>

namespace orvesa::recorders {

/// Another process has claimed the name.
void claimPortElsewhere(const QString &name);
void releasePortsElsewhere();
/// No port of any name can be made or reached.
void setPortsAvailable(bool isAvailable);
/// Whether the run loop would deliver messages to the port of that name.
[[nodiscard]] bool isServed(const QString &name);
/// What the last request carried.
[[nodiscard]] QByteArray lastRequest();
/// Whether a process that owns a port answers.
void setAnswering(bool isAnswering);

} // namespace orvesa::recorders
