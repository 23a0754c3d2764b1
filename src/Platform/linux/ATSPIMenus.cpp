#include "Platform/linux/ATSPIMenus.h"

#include "Platform/linux/TerminalPrograms.h"

#include <QDBusVariant>

#include <algorithm>
#include <array>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int deepestMenuBar = 4;
constexpr std::size_t mostContainers = 64;
constexpr int mostItems = 200;

QString accessible()
{
    return u"Accessible"_s;
}

/// A program whose Copy item does not follow the selection, or is brought up to date only when its menu is opened: it
/// would say "nothing selected" although something is, or accept a command that does nothing.
bool isProgramWithStaleMenus(const QString &name)
{
    constexpr std::array names{"soffice"_L1, "libreoffice"_L1, "oosplash"_L1, "geany"_L1};
    const QString lower = name.toLower();
    return std::ranges::any_of(names, [&](QLatin1StringView known) { return lower.startsWith(known); }) ||
           TerminalPrograms::copyKeys(lower.toLatin1(), lower.toLatin1()).has_value();
}

std::optional<QVariant> propertyIn(const std::optional<QVariantList> &answer)
{
    if (!answer || answer->isEmpty()) {
        return std::nullopt;
    }
    return answer->constFirst().value<QDBusVariant>().variant();
}

} // namespace

bool ATSPIMenuItem::isNamedCopy() const
{
    QString letters;
    for (const QChar character : identifier.toLower()) {
        if (character.isLetterOrNumber()) {
            letters += character;
        }
    }
    constexpr std::array names{"copy"_L1,           "editcopy"_L1,    "actioncopy"_L1,
                               "actioneditcopy"_L1, "wineditcopy"_L1, "clipboardcopy"_L1};
    return std::ranges::find(names, letters) != names.end();
}

ATSPIMenus::ATSPIMenus(ATSPIClient &client) : m_client(client) {}

bool ATSPIMenus::isTrusted(const QString &busName)
{
    const auto name = m_client.property({busName, u"/org/a11y/atspi/accessible/root"_s}, accessible(), u"Name"_s);
    return name && !isProgramWithStaleMenus(name->toString());
}

std::optional<ATSPIReference> ATSPIMenus::menuBar(const ATSPIReference &window)
{
    if (!isTrusted(window.busName)) {
        return std::nullopt;
    }
    // It is near the top, and before the content.
    std::vector<ATSPIReference> level{window};
    for (int depth = 0; depth < deepestMenuBar && !level.empty(); ++depth) {
        std::vector<ATSPIClient::Call> listing;
        for (const ATSPIReference &container : level) {
            listing.push_back({container, accessible(), u"GetChildren"_s, {}});
        }
        std::vector<ATSPIReference> children;
        for (const auto &answer : m_client.callTogether(listing)) {
            for (const ATSPIReference &child : ATSPIClient::referencesIn(answer)) {
                if (children.size() < mostContainers) {
                    children.push_back(child);
                }
            }
        }
        std::vector<ATSPIClient::Call> questions;
        for (const ATSPIReference &child : children) {
            questions.push_back({child, accessible(), u"GetRole"_s, {}});
        }
        const auto roles = m_client.callTogether(questions);
        for (std::size_t index = 0; index < children.size(); ++index) {
            if (roles[index] && roles[index]->value(0).toUInt() == ATSPIRole::menuBar) {
                return children[index];
            }
        }
        level = std::move(children);
    }
    return std::nullopt;
}

std::vector<ATSPIMenuItem> ATSPIMenus::items(const ATSPIReference &menu)
{
    std::vector<ATSPIReference> children = m_client.children(menu);
    if (children.size() > mostItems) {
        children.resize(mostItems);
    }
    constexpr std::size_t questionsPerItem = 3;
    std::vector<ATSPIClient::Call> questions;
    for (const ATSPIReference &child : children) {
        questions.push_back(ATSPIClient::propertyCall(child, accessible(), u"AccessibleId"_s));
        questions.push_back(ATSPIClient::propertyCall(child, accessible(), u"ChildCount"_s));
        questions.push_back({child, u"org.a11y.atspi.Action"_s, u"GetKeyBinding"_s, {0}});
    }
    const auto answers = m_client.sendTogether(questions);
    std::vector<ATSPIMenuItem> items;
    for (std::size_t index = 0; index < children.size(); ++index) {
        const auto &name = answers[index * questionsPerItem];
        const auto &count = answers[index * questionsPerItem + 1];
        const auto &binding = answers[index * questionsPerItem + 2];
        ATSPIMenuItem item{.element = children[index]};
        if (const auto value = propertyIn(name)) {
            item.identifier = value->toString();
        }
        if (const auto value = propertyIn(count)) {
            item.hasChildren = value->toInt() > 0;
        }
        if (binding && !binding->isEmpty()) {
            item.accelerator = ATSPIAccelerator::fromKeyBinding(binding->constFirst().toString());
        }
        items.push_back(item);
    }
    return items;
}

std::optional<bool> ATSPIMenus::isEnabled(const ATSPIReference &item)
{
    const auto states = m_client.knownStates(item);
    return states ? std::optional(states->has(ATSPIState::enabled) && states->has(ATSPIState::sensitive))
                  : std::nullopt;
}

std::optional<ATSPIMenus::CopyCommand> ATSPIMenus::copyCommand(const ATSPIReference &element)
{
    const auto count = m_client.property(element, u"Action"_s, u"NActions"_s);
    if (!count) {
        return std::nullopt;
    }
    std::vector<ATSPIClient::Call> questions;
    for (int index = 0; index < std::min(count->toInt(), mostItems); ++index) {
        questions.push_back({element, u"Action"_s, u"GetName"_s, {index}});
    }
    std::optional<CopyCommand> command;
    const auto names = m_client.callTogether(questions);
    for (std::size_t index = 0; index < names.size(); ++index) {
        const QString name = names[index] ? names[index]->value(0).toString() : QString();
        if (name == "clipboard.copy"_L1) {
            return CopyCommand{static_cast<int>(index)};
        }
        // Commands that cannot be used are left out. Whoever can select everything has a copy command.
        if (name == "selection.select-all"_L1) {
            command = CopyCommand{};
        }
    }
    const bool isWhole = std::ranges::all_of(names, [](const auto &name) { return name.has_value(); });
    return isWhole ? command : std::nullopt;
}

} // namespace orvesa
