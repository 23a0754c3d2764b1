// Answers of OpenAI and xAI, which one function decodes.

#include "AI/OpenAIChatAPI.h"
#include "fuzz/AnswerCheck.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    orvesa::checkAnswer(orvesa::OpenAIChatAPI::answerText, body, orvesa::EmptyAnswer::allowed);
    return 0;
}
