#pragma once

// Answers prompts with what a program makes of their text: the text after the prompt's label goes to the program's
// standard input, its standard output is the answer. One process per request; the thread's event loop goes on.

#include "service/ServiceListener.h"

#include <QString>
#include <QStringList>

namespace orvesa::service {

/// A request without a prompt gets the protocol's own answer; a program that fails gives status 500 with its last
/// words.
[[nodiscard]] Responder commandResponder(QString program, QStringList arguments);

} // namespace orvesa::service
