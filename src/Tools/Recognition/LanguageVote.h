#pragma once

// Whether a capture is Japanese or Chinese, by how sure the two engines are of all they read. A value; any thread.

#include "Tools/Recognition/Reading.h"

namespace orvesa {

class LanguageVote final {
public:
    /// One piece as both engines read it.
    void add(const Reading &japanese, const Reading &chinese);

    /// The better reading of a piece.
    [[nodiscard]] bool leansToJapanese() const { return m_japanese >= 0; }
    [[nodiscard]] const Reading &choice(const Reading &japanese, const Reading &chinese) const;

private:
    double m_japanese = 0; ///< more than 0: the pieces are rather Japanese
    int m_glyphs = 0;
};

} // namespace orvesa
