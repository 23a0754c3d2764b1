#pragma once

// What has to hold for a service's answer whatever its bytes are: a decoder gives a text or throws AppError, and a text
// is well formed and has no blanks around it.

#include "Models/AppError.h"
#include "Models/Text.h"

#include <QByteArray>

#include <cstdlib>

namespace orvesa {

enum class EmptyAnswer { allowed, forbidden };

template <typename Decoder>
void checkAnswer(const Decoder &decoder, const QByteArray &body, EmptyAnswer emptyAnswer)
{
    try {
        const QString text = decoder(body);
        const bool isTrimmed = trimmedWhitespaceAndNewlines(text).size() == text.size();
        const bool mayBeEmpty = emptyAnswer == EmptyAnswer::allowed;
        if (!isTrimmed || !text.isValidUtf16() || (text.isEmpty() && !mayBeEmpty)) {
            std::abort();
        }
    } catch (const AppError &) {
        return; // the only error that a decoder may end with
    }
}

} // namespace orvesa
