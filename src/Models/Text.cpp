#include "Models/Text.h"

#include "Models/GraphemeClusters.h"

namespace orvesa {

namespace {

bool isWhitespaceOrNewline(QChar character)
{
    // Every character of category Z lies in the basic plane, so code units can be asked one by one.
    switch (character.category()) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return (character >= u'\t' && character <= u'\r') || character == u'\u0085';
    }
}

} // namespace

QStringView trimmedWhitespaceAndNewlines(QStringView text)
{
    while (!text.isEmpty() && isWhitespaceOrNewline(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isWhitespaceOrNewline(text.back())) {
        text.chop(1);
    }
    return text;
}

bool isBlank(QStringView text)
{
    return trimmedWhitespaceAndNewlines(text).isEmpty();
}

qsizetype characterCount(QStringView text)
{
    return graphemeClusterCount(text);
}

QString printable(QStringView text, QStringView harmless)
{
    QString result = text.toString();
    for (QChar &character : result) {
        if (character.category() == QChar::Other_Control && !harmless.contains(character)) {
            character = QChar::ReplacementCharacter;
        }
    }
    return result;
}

} // namespace orvesa
