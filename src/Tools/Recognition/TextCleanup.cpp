#include "Tools/Recognition/TextCleanup.h"

#include "Tools/Recognition/Scripts.h"

#include <QRegularExpression>

#include <array>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;
using Scripts::isHiragana;
using Scripts::isIdeograph;
using Scripts::isKatakana;

namespace {

/// Katakana and the ideographs that look like them.
constexpr std::array<std::pair<char16_t, char16_t>, 9> katakanaTwins{{{u'ロ', u'口'},
                                                                      {u'カ', u'力'},
                                                                      {u'ニ', u'二'},
                                                                      {u'ハ', u'八'},
                                                                      {u'タ', u'夕'},
                                                                      {u'エ', u'工'},
                                                                      {u'ト', u'卜'},
                                                                      {u'オ', u'才'},
                                                                      {u'ー', u'一'}}};
/// Katakana and the hiragana that look like them.
constexpr std::array<std::pair<char16_t, char16_t>, 3> kanaTwins{{{u'ヘ', u'へ'}, {u'ベ', u'べ'}, {u'ペ', u'ぺ'}}};

QChar at(const QString &text, qsizetype index)
{
    return index >= 0 && index < text.size() ? text[index] : QChar();
}

bool isKatakanaOrMark(QChar character)
{
    return isKatakana(character) || character == u'ー';
}

/// Between katakana only katakana are likely, between ideographs and blanks only ideographs.
void settleTwins(QString &line)
{
    for (qsizetype index = 0; index < line.size(); ++index) {
        const QChar before = at(line, index - 1);
        const QChar after = at(line, index + 1);
        const bool amongKatakana = isKatakanaOrMark(before) || isKatakanaOrMark(after);
        const bool besideKatakana =
            isKatakanaOrMark(before) && (isKatakanaOrMark(after) || !isIdeograph(QString(after)));
        for (const auto &[katakana, ideograph] : katakanaTwins) {
            if (line[index] == ideograph && besideKatakana && (isKatakanaOrMark(after) || ideograph == u'一')) {
                line[index] = katakana;
            } else if (line[index] == katakana && katakana != u'ト' && !amongKatakana &&
                       (isIdeograph(QString(before)) && isIdeograph(QString(after)))) {
                line[index] = ideograph;
            }
        }
        for (const auto &[katakana, hiragana] : kanaTwins) {
            if (line[index] == hiragana && amongKatakana && !isHiragana(before) && !isHiragana(after)) {
                line[index] = katakana;
            } else if (line[index] == katakana && !isKatakanaOrMark(after) &&
                       (isHiragana(after) || isIdeograph(QString(after)) || (!amongKatakana && isHiragana(before)))) {
                line[index] = hiragana; // after a katakana word, the particle
            }
        }
    }
}

/// Curly quotes come in pairs; where they do not, they were straight ones.
void straightenQuotes(QString &line)
{
    const auto straighten = [&](QChar open, QChar close, QChar straight) {
        if (line.count(open) != line.count(close) || line.contains(straight)) {
            // A closing one between letters is an apostrophe and says nothing.
            line.replace(open, straight);
            line.replace(close, straight);
        }
    };
    straighten(u'‘', u'’', u'\'');
    straighten(u'“', u'”', u'"');
}

/// The letter O in what is otherwise a hexadecimal number.
void settleZeros(QString &line)
{
    static const QRegularExpression number(u"\\b[0-9a-fO]{6,}\\b"_s);
    static const QRegularExpression digit(u"[0-9]"_s);
    for (auto matches = number.globalMatch(line); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        if (match.captured().contains(digit) && match.captured().count(u'O') == 1) {
            line.replace(match.capturedStart() + match.captured().indexOf(u'O'), 1, u'0');
        }
    }
}

} // namespace

QString cleanedDown(QString line)
{
    return line.remove(u' ').replace(u',', u'，').replace(u'!', u'！').replace(u'?', u'？');
}

QString cleaned(QString line)
{
    settleTwins(line);
    settleZeros(line);
    straightenQuotes(line);
    return line.trimmed();
}

} // namespace orvesa
