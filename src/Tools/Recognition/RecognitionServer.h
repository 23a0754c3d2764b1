#pragma once

// Answers images that arrive on a pipe, one after the other, until the pipe ends.
//
// A request is the line "IMAGE n" and n bytes of an image file. The answer is the line "TEXT n" and n bytes of UTF-8,
// or the line "FAILED reason". Blocks; one thread.

#include "Tools/Recognition/TextReader.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace orvesa {

class RecognitionServer final {
public:
    /// File descriptors that stay open and the caller's. The pool must outlive the server.
    RecognitionServer(int input, int output, EnginePool &pool);

    /// False when the other side broke the protocol or went away in the middle. `beforeAnswer` is called when an image
    /// has been read, before its answer leaves.
    bool serve(const std::function<void()> &beforeAnswer);

    struct Outcome {
        std::optional<QString> text;
        QString failure; ///< one English line where there is no text
    };

    /// What one image file holds. Waits for the engines.
    [[nodiscard]] static Outcome recognize(EnginePool &pool, const QByteArray &file);

private:
    [[nodiscard]] std::optional<QByteArray> readLine();
    [[nodiscard]] std::optional<QByteArray> readBytes(qsizetype count);
    [[nodiscard]] bool write(const QByteArray &bytes) const;
    [[nodiscard]] bool fill();

    int m_input;
    int m_output;
    EnginePool &m_pool;
    QByteArray m_buffer;
};

} // namespace orvesa
