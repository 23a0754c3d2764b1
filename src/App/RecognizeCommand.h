#pragma once

// Prints the text in an image file, through the same recognition as a capture of the screen.
//
// Main thread, inside a running core application, without a display. The port must outlive the run.

#include "App/CommandLine.h"
#include "Platform/TextRecognitionPort.h"

#include <QCoroTask>

namespace orvesa {

class RecognizeCommand final {
public:
    explicit RecognizeCommand(TextRecognitionPort &recognition);

    /// Prints to standard output; why there is nothing to print goes to standard error.
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> run(CommandLine::Recognize request) const;

private:
    TextRecognitionPort &m_recognition;
};

} // namespace orvesa
