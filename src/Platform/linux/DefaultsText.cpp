#include "Platform/linux/DefaultsText.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvesa::DefaultsText {

using namespace Qt::StringLiterals;

namespace {

bool isBareKeyCharacter(QChar character)
{
    return character.unicode() < 0x80 &&
           (character.isLetterOrNumber() || character == u'.' || character == u'-' || character == u'_');
}

bool needsEscape(QChar character)
{
    // Line and paragraph separators would be line breaks to some editors; half a surrogate pair has no UTF-8 form.
    return character.unicode() < 0x20 || (character.unicode() >= 0x7f && character.unicode() < 0xa0) ||
           character.unicode() == 0x2028 || character.unicode() == 0x2029;
}

void appendEscape(QString &result, QChar character)
{
    switch (character.unicode()) {
    case '\n':
        result += R"(\n)"_L1;
        break;
    case '\r':
        result += R"(\r)"_L1;
        break;
    case '\t':
        result += R"(\t)"_L1;
        break;
    default:
        result += u"\\u%1"_s.arg(uint{character.unicode()}, 4, 16, QChar(u'0'));
        break;
    }
}

QString quoted(const QString &text, QChar quote)
{
    QString result(quote);
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar character = text.at(index);
        if (character == quote || character == u'\\') {
            result += u'\\';
            result += character;
        } else if (character.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate()) {
            result += character;
            result += text.at(++index);
        } else if (needsEscape(character) || character.isSurrogate()) {
            appendEscape(result, character);
        } else {
            result += character;
        }
    }
    result += quote;
    return result;
}

/// The character that an escape stands for; `text` begins after the backslash and is moved past the escape.
std::optional<QChar> takeEscape(QStringView &text)
{
    if (text.isEmpty()) {
        return std::nullopt;
    }
    const QChar kind = text.front();
    text = text.sliced(1);
    switch (kind.unicode()) {
    case 'n':
        return QChar(u'\n');
    case 'r':
        return QChar(u'\r');
    case 't':
        return QChar(u'\t');
    case '\\':
    case '"':
    case '\'':
        return kind;
    case 'u': {
        bool isNumber = false;
        const ushort code = text.size() < 4 ? ushort{0} : text.first(4).toUShort(&isNumber, 16);
        if (!isNumber) {
            return std::nullopt;
        }
        text = text.sliced(4);
        return QChar(code);
    }
    default:
        return std::nullopt;
    }
}

/// Takes a quoted text off the front.
std::optional<QString> takeQuoted(QStringView &text)
{
    if (text.isEmpty() || (text.front() != u'"' && text.front() != u'\'')) {
        return std::nullopt;
    }
    const QChar quote = text.front();
    QStringView rest = text.sliced(1);
    QString result;
    while (!rest.isEmpty()) {
        const QChar character = rest.front();
        rest = rest.sliced(1);
        if (character == quote) {
            text = rest;
            return result;
        }
        if (character != u'\\') {
            result += character;
            continue;
        }
        const auto escaped = takeEscape(rest);
        if (!escaped) {
            return std::nullopt;
        }
        result += *escaped;
    }
    return std::nullopt;
}

template <typename Value>
std::optional<DefaultsValue> present(Value value)
{
    return std::optional<DefaultsValue>(std::in_place, std::in_place_type<Value>, std::move(value));
}

std::optional<DefaultsValue> parseData(QStringView text)
{
    if (text.startsWith(u":base64")) {
        const QByteArray encoded = text.sliced(7).trimmed().toLatin1();
        auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded) {
            return std::nullopt;
        }
        return present(*decoded);
    }
    text = text.trimmed();
    const auto content = takeQuoted(text);
    if (!content || !text.trimmed().isEmpty()) {
        return std::nullopt;
    }
    return present(content->toUtf8());
}

std::optional<DefaultsValue> parseNumber(QStringView text)
{
    bool isNumber = false;
    if (const qint64 integer = text.toLongLong(&isNumber); isNumber) {
        return present(integer);
    }
    if (const double real = text.toDouble(&isNumber); isNumber) {
        return present(real);
    }
    if (text == u"nan"_s) {
        return present(std::numeric_limits<double>::quiet_NaN());
    }
    if (text == u"inf"_s || text == u"-inf"_s) {
        const double infinity = std::numeric_limits<double>::infinity();
        return present(text.front() == u'-' ? -infinity : infinity);
    }
    return std::nullopt;
}

QByteArray realText(double value)
{
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    QByteArray text = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    if (!text.contains('.') && !text.contains('e')) {
        text += ".0"; // or it would be read as an integer
    }
    return text;
}

QByteArray dataText(const QByteArray &data)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(data);
    if (decoder.hasError() || text.toUtf8() != data) {
        return "data:base64 " + data.toBase64();
    }
    return "data " + quoted(text, u'\'').toUtf8();
}

struct ValueWriter {
    QByteArray operator()(bool value) const { return value ? "true" : "false"; }
    QByteArray operator()(qint64 value) const { return QByteArray::number(value); }
    QByteArray operator()(double value) const { return realText(value); }
    QByteArray operator()(const QString &value) const { return quoted(value, u'"').toUtf8(); }
    QByteArray operator()(const QByteArray &value) const { return dataText(value); }
};

} // namespace

std::optional<QString> takeKey(QStringView &text)
{
    if (!text.isEmpty() && !isBareKeyCharacter(text.front())) {
        return takeQuoted(text);
    }
    qsizetype length = 0;
    while (length < text.size() && isBareKeyCharacter(text.at(length))) {
        ++length;
    }
    if (length == 0) {
        return std::nullopt;
    }
    QString key = text.first(length).toString();
    text = text.sliced(length);
    return key;
}

std::optional<DefaultsValue> parseValue(QStringView text)
{
    if (text == u"true" || text == u"false") {
        return present(text == u"true");
    }
    if (text.startsWith(u"data")) {
        return parseData(text.sliced(4));
    }
    if (text.startsWith(u'"') || text.startsWith(u'\'')) {
        const auto content = takeQuoted(text);
        if (!content || !text.trimmed().isEmpty()) {
            return std::nullopt;
        }
        return present(*content);
    }
    return parseNumber(text);
}

QByteArray keyText(const QString &key)
{
    const bool isBare = !key.isEmpty() && std::all_of(key.begin(), key.end(), isBareKeyCharacter);
    return (isBare ? key : quoted(key, u'"')).toUtf8();
}

QByteArray valueText(const DefaultsValue &value)
{
    return std::visit(ValueWriter{}, value);
}

} // namespace orvesa::DefaultsText
