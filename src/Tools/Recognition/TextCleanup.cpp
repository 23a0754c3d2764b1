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

/// The letter O in what is otherwise a hexadecimal number, and l in one that begins with 0x.
void settleZeros(QString &line)
{
    static const QRegularExpression prefixed(u"\\b[0Oo]x([0-9a-fA-FlOI]+)\\b"_s);
    for (auto matches = prefixed.globalMatch(line); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        QString digits = match.captured(1);
        digits.replace(u'l', u'1').replace(u'I', u'1').replace(u'O', u'0');
        line.replace(match.capturedStart(), match.capturedLength(), u"0x"_s + digits);
    }
    static const QRegularExpression number(u"\\b[0-9a-fO]{6,}\\b"_s);
    static const QRegularExpression digit(u"[0-9]"_s);
    for (auto matches = number.globalMatch(line); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        if (match.captured().contains(digit) && match.captured().count(u'O') == 1) {
            line.replace(match.capturedStart() + match.captured().indexOf(u'O'), 1, u'0');
        }
    }
}

/// Keys as menus show them: the plus sign and the l of Ctrl are small there, and no word helps to read them.
void settleKeys(QString &line)
{
    static const QRegularExpression control(u"\\bCt[rt] ?[l1tLI|i] ?[+十]"_s);
    static const QRegularExpression others(u"\\b(Ctrl|Shift|Alt|Super|Strg|Cmd|Meta) ?[+十] ?(?=\\S)"_s);
    line.replace(control, u"Ctrl+"_s);
    line.replace(others, u"\\1+"_s);
    static const QRegularExpression doubled(u"\\+([A-Z])([a-z])$"_s);
    static const QRegularExpression doubledBefore(u"\\+([a-z])([A-Z])$"_s);
    const auto single = [&](const QRegularExpression &pattern, int kept) {
        const QRegularExpressionMatch match = pattern.match(line);
        if (match.hasMatch() && match.captured(1).toUpper() == match.captured(2).toUpper()) {
            line.replace(match.capturedStart(), match.capturedLength(), u'+' + match.captured(kept));
        }
    };
    single(doubled, 1);
    single(doubledBefore, 2);
}

/// The first person, which looks like a bar where nothing else is.
void settleBars(QString &line)
{
    static const QRegularExpression bar(
        u"(^|[.!?\"] )\\|(?= (?:am|can|can't|could|did|didn't|do|don't|had|have|haven't|hope|just|know|like|need|"
        u"never|see|should|think|thought|want|was|will|wish|won't|would)\\b|['’](?:m|ll|ve|d)\\b)"_s);
    line.replace(bar, u"\\1I"_s);
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
    settleKeys(line);
    settleBars(line);
    straightenQuotes(line);
    return line.trimmed();
}

} // namespace orvesa
