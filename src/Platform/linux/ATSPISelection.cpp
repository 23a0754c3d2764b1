#include "Platform/linux/ATSPISelection.h"

#include <QDBusVariant>

#include <algorithm>
#include <array>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// Elements that hold their whole text themselves; others may be paragraphs of something larger.
constexpr std::array wholeTextRoles{ATSPIRole::text, ATSPIRole::entry, ATSPIRole::terminal, ATSPIRole::spinButton};

QString text()
{
    return u"Text"_s;
}

/// One toolkit puts a byte order mark behind every character beyond the first 65536, so that its offsets stay right.
QString withoutFillers(const QString &text)
{
    constexpr QChar filler(0xfeff);
    QString result;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const bool isBehindPair = index > 0 && text.at(index - 1).isLowSurrogate();
        if (text.at(index) != filler || !isBehindPair) {
            // Only where each of them has one; otherwise it was meant.
            if (isBehindPair) {
                return text;
            }
            result += text.at(index);
        }
    }
    return result.size() < text.size() && !text.back().isLowSurrogate() ? result : text;
}

int countIn(const std::optional<QVariantList> &answer)
{
    return answer && !answer->isEmpty() ? answer->constFirst().toInt() : 0;
}

} // namespace

ATSPISelection::ATSPISelection(ATSPIClient &client) : m_client(client) {}

int ATSPISelection::selectionCount(const ATSPIReference &element)
{
    return countIn(m_client.call(element, text(), u"GetNSelections"_s));
}

std::vector<ATSPIClient::Call> ATSPISelection::questions(const ATSPIReference &element)
{
    return {{element, u"Accessible"_s, u"GetRole"_s, {}},
            {element, text(), u"GetNSelections"_s, {}},
            {element, text(), u"GetSelection"_s, {0}}};
}

std::optional<QString> ATSPISelection::read(const ATSPIReference &element)
{
    return read(element, m_client.callTogether(questions(element)));
}

std::optional<QString> ATSPISelection::read(const ATSPIReference &element, const Answers &answers)
{
    if (countIn(answers[1]) != 1 || !answers[0] || answers[0]->isEmpty()) {
        return std::nullopt;
    }
    const quint32 role = answers[0]->constFirst().toUInt();
    const auto &range = answers[2];
    if (role == ATSPIRole::passwordText || !range || range->size() != 2) {
        return std::nullopt;
    }
    // The offsets are of the application's own making and go back to it as they came.
    const int start = std::min(range->at(0).toInt(), range->at(1).toInt());
    const int end = std::max(range->at(0).toInt(), range->at(1).toInt());
    if (start < 0 || start == end) {
        return std::nullopt;
    }
    const auto answer = m_client.call(element, text(), u"GetText"_s, {start, end});
    if (!answer || answer->isEmpty()) {
        return std::nullopt;
    }
    const QString selected = withoutFillers(answer->constFirst().toString());
    if (selected.contains(QChar::ObjectReplacementCharacter)) {
        return std::nullopt;
    }
    const bool isWhole = std::ranges::find(wholeTextRoles, role) != wholeTextRoles.end();
    if (!isWhole && goesOn(element, start, end)) {
        return std::nullopt;
    }
    return selected;
}

bool ATSPISelection::goesOn(const ATSPIReference &element, int start, int end)
{
    const auto count = m_client.property(element, text(), u"CharacterCount"_s);
    const bool reachesEnd = !count || end >= count->toInt();
    if (start > 0 && !reachesEnd) {
        return false;
    }
    const auto parentValue = m_client.property(element, u"Accessible"_s, u"Parent"_s);
    const auto indexAnswer = m_client.call(element, u"Accessible"_s, u"GetIndexInParent"_s);
    if (!parentValue || !parentValue->canConvert<QDBusArgument>() || !indexAnswer || indexAnswer->isEmpty()) {
        return !m_client.mayAsk(element.busName);
    }
    ATSPIReference parent;
    parentValue->value<QDBusArgument>() >> parent;
    const int index = indexAnswer->constFirst().toInt();
    const auto isSelected = [&](int position) {
        const auto sibling = m_client.call(parent, u"Accessible"_s, u"GetChildAtIndex"_s, {position});
        if (!sibling || sibling->isEmpty() || !sibling->constFirst().canConvert<QDBusArgument>()) {
            return false;
        }
        ATSPIReference reference;
        sibling->constFirst().value<QDBusArgument>() >> reference;
        if (selectionCount(reference) > 0) {
            return true;
        }
        // An empty one in between says nothing on either side.
        const auto length = m_client.property(reference, text(), u"CharacterCount"_s);
        return length && length->toInt() == 0;
    };
    return (start == 0 && index > 0 && isSelected(index - 1)) || (reachesEnd && isSelected(index + 1));
}

} // namespace orvesa
