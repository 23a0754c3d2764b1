#pragma once

// Has screen readers say something that no focus change would make them say. Main thread.

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QObject)
QT_FORWARD_DECLARE_CLASS(QString)

namespace orvesa::ATSPIAnnouncement {

/// Sends AT-SPI's announcement event in the window's name over Qt's own connection to the accessibility bus, for this
/// release of Qt knows no such event. Nothing happens while nobody uses the accessibility interface.
void send(QObject &window, const QString &text);

} // namespace orvesa::ATSPIAnnouncement
