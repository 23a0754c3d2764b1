#include "AI/JSONAnswer.h"

#include "Models/AppError.h"
#include "Models/JSONReading.h"

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void throwInvalidResponse()
{
    throw AppError(AppError::Kind::invalidAPIResponse);
}

} // namespace

QByteArray encodedRequest(const nlohmann::ordered_json &body)
{
    try {
        return QByteArray::fromStdString(body.dump());
    } catch (const nlohmann::json::exception &) {
        throw AppError::apiRequestFailed(u"Failed to encode request body."_s);
    }
}

std::string jsonText(const QString &text)
{
    if (text.isValidUtf16()) {
        return text.toStdString();
    }
    QString repaired = text;
    for (qsizetype index = 0; index < repaired.size(); ++index) {
        const QChar unit = repaired.at(index);
        const bool isPair =
            unit.isHighSurrogate() && index + 1 < repaired.size() && repaired.at(index + 1).isLowSurrogate();
        if (isPair) {
            ++index;
        } else if (unit.isSurrogate()) {
            repaired[index] = QChar::ReplacementCharacter;
        }
    }
    return repaired.toStdString();
}

JSONAnswer decodedAnswer(const QByteArray &body)
{
    const auto boundDepth = [](int depth, JSONAnswer::parse_event_t, JSONAnswer &) {
        if (depth > greatestJSONDepth) {
            throwInvalidResponse();
        }
        return true;
    };
    try {
        JSONAnswer answer = JSONAnswer::parse(body.constBegin(), body.constEnd(), boundDepth);
        if (!answer.is_object()) {
            throwInvalidResponse();
        }
        return answer;
    } catch (const nlohmann::json::exception &) {
        throwInvalidResponse();
    }
}

const JSONAnswer &requiredMember(const JSONAnswer &object, const char *name)
{
    const JSONAnswer *member = optionalMember(object, name);
    if (member == nullptr) {
        throwInvalidResponse();
    }
    return *member;
}

const JSONAnswer *optionalMember(const JSONAnswer &object, const char *name)
{
    if (!object.is_object()) {
        throwInvalidResponse();
    }
    const auto found = object.find(name);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

const JSONAnswer &requiredArray(const JSONAnswer &value)
{
    if (!value.is_array()) {
        throwInvalidResponse();
    }
    return value;
}

QString requiredString(const JSONAnswer &value)
{
    if (!value.is_string()) {
        throwInvalidResponse();
    }
    return JSONReading::decoded(value.get_ref<const std::string &>());
}

std::optional<QString> optionalString(const JSONAnswer &object, const char *name)
{
    const JSONAnswer *member = optionalMember(object, name);
    return member == nullptr ? std::nullopt : std::optional(requiredString(*member));
}

QUrl serviceURL(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    const bool isASCII =
        std::all_of(text.cbegin(), text.cend(), [](QChar unit) { return unit > QChar(u' ') && unit < QChar(u'\x7f'); });
    if (!isASCII || !url.isValid() || url.host().isEmpty()) {
        throwInvalidResponse();
    }
    return url;
}

} // namespace orvesa
