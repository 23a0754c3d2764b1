// The cut that an error's body goes through before a message shows it.

#include "AI/APIHTTPClient.h"
#include "AI/ErrorText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString text = orvesa::errorText(body);
    const QByteArray shown = body.left(orvesa::APIHTTPClient::maximumErrorBytes);
    // The text is all of the bytes, or nothing.
    const bool isWhole = text.toUtf8() == shown;
    if (!text.isValidUtf16() || !(isWhole || text.isEmpty())) {
        std::abort();
    }
    // Seven-bit text is always shown.
    bool isASCII = true;
    for (const char byte : shown) {
        isASCII = isASCII && static_cast<unsigned char>(byte) < 0x80;
    }
    if (isASCII && !isWhole) {
        std::abort();
    }
    return 0;
}
