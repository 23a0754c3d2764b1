#include "Tools/GlyphText.h"

namespace orvesa {

QString textOf(const ReadLine &line)
{
    QString text;
    for (const Glyph &glyph : line.glyphs) {
        if (glyph.beginsWord && !text.isEmpty()) {
            text += u' ';
        }
        text += glyph.text;
    }
    return text;
}

} // namespace orvesa
