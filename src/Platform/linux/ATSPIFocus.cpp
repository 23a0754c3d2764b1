#include "Platform/linux/ATSPIFocus.h"

#include "Platform/linux/ATSPICacheItem.h"
#include "Platform/linux/ATSPIMatchRule.h"

#include <QDBusMetaType>

#include <algorithm>
#include <map>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 canonicalOrder = 1;
constexpr int mostMatches = 32;
constexpr int mostAttempts = 24;
constexpr int attemptsOnKnownWindow = 4;
constexpr std::size_t cheapQuestions = 4;
constexpr std::size_t mostSteps = 2000;

QString rootPath()
{
    return u"/org/a11y/atspi/accessible/root"_s;
}

bool isPassedOver(std::optional<quint32> role)
{
    return role == ATSPIRole::menuBar || role == ATSPIRole::menu || role == ATSPIRole::toolBar;
}

} // namespace

ATSPIFocus::ATSPIFocus(ATSPIClient &client) : m_client(client) {}

ATSPIFocus::Confirmation ATSPIFocus::confirm(const ATSPIReference &window, const ATSPIReference &element)
{
    // As in a search, the application may have to be asked again. Toolkits take what came from the X server and what
    // came over the bus in turns, and the return of the keyboard is among the former: the role, which does not depend
    // on it, is asked first.
    std::vector<ATSPIClient::Call> calls = ATSPISelection::questions(element);
    const auto state = [](const ATSPIReference &object) {
        return ATSPIClient::Call{object, u"Accessible"_s, u"GetState"_s, {}};
    };
    calls.insert(calls.begin() + 1, {state(element), state(window)});
    for (int attempt = 0; attempt < attemptsOnKnownWindow && m_client.mayAsk(window.busName); ++attempt) {
        auto answers = m_client.callTogether(calls);
        if (!ATSPIClient::statesIn(answers[2]).has(ATSPIState::active)) {
            continue;
        }
        if (!ATSPIClient::statesIn(answers[1]).has(ATSPIState::focused)) {
            return {};
        }
        answers.erase(answers.begin() + 1, answers.begin() + 3);
        return {Still::focused, std::move(answers)};
    }
    return {Still::inAnotherWindow, {}};
}

std::optional<ATSPIFocus::Found> ATSPIFocus::find(const QString &busName, std::optional<ATSPIReference> &window)
{
    // The application has just been given the keyboard back that the shortcut's grab had taken from it, and may not
    // have heard of it yet. Each question lets it go on by a step, so asking again is all the waiting that is needed.
    // For the same reason a window that was the active one is not given up at its first denial.
    int patience = window ? attemptsOnKnownWindow : 0;
    for (int attempt = 0; attempt < mostAttempts && m_client.mayAsk(busName); ++attempt) {
        if (!window) {
            window = activeWindow(busName);
        }
        if (!window) {
            continue;
        }
        const Result result = search(*window);
        if (result.way == Way::unavailable) {
            return searchWithoutMatching(*window);
        }
        if (result.found) {
            return result.found;
        }
        if (result.way == Way::inactive && --patience < 0) {
            window.reset();
        }
    }
    return std::nullopt;
}

std::optional<ATSPIFocus::Found> ATSPIFocus::searchWithoutMatching(const ATSPIReference &window)
{
    if (const Result result = lookThroughCache(window); result.way == Way::exhausted) {
        return result.found;
    }
    return walk(window);
}

std::optional<ATSPIReference> ATSPIFocus::activeWindow(const QString &busName)
{
    const auto windows = m_client.children({busName, rootPath()});
    const auto states = m_client.states(windows);
    const auto active =
        std::ranges::find_if(states, [](const ATSPIStateSet &state) { return state.has(ATSPIState::active); });
    return active == states.end() ? std::nullopt
                                  : std::optional(windows[static_cast<std::size_t>(active - states.begin())]);
}

ATSPIFocus::Result ATSPIFocus::search(const ATSPIReference &window)
{
    static const QMetaType ruleType = qDBusRegisterMetaType<ATSPIMatchRule>();
    Q_UNUSED(ruleType)
    const QVariantList rule{QVariant::fromValue(ATSPIMatchRule{ATSPIState::focused}), canonicalOrder, mostMatches,
                            true};
    // A search takes the application a millisecond and more. Some cheap questions ahead of it let what came from the X
    // server pass, so that the first search is the last.
    std::vector<ATSPIClient::Call> calls(cheapQuestions, {window, u"Accessible"_s, u"GetState"_s, {}});
    calls.push_back({window, u"Collection"_s, u"GetMatches"_s, rule});
    calls.push_back(calls.front());
    const auto answers = m_client.callTogether(calls);
    if (!ATSPIClient::statesIn(answers.back()).has(ATSPIState::active)) {
        return {Way::inactive, std::nullopt};
    }
    const auto &answer = answers[cheapQuestions];
    if (!answer || answer->isEmpty()) {
        return {};
    }
    const auto argument = answer->constFirst().value<QDBusArgument>();
    if (argument.currentSignature() != "a(so)"_L1) {
        return {};
    }
    QList<ATSPIReference> matches;
    argument >> matches;
    return {Way::exhausted, preferText({matches.begin(), matches.end()})};
}

std::optional<ATSPIFocus::Found> ATSPIFocus::preferText(const std::vector<ATSPIReference> &candidates)
{
    if (candidates.size() < 2) {
        return candidates.empty() ? std::nullopt : std::optional(Found{candidates.front(), true});
    }
    const auto withText = std::ranges::find_if(
        candidates, [this](const ATSPIReference &candidate) { return m_client.hasText(candidate); });
    return Found{withText == candidates.end() ? candidates.front() : *withText, false};
}

ATSPIFocus::Result ATSPIFocus::lookThroughCache(const ATSPIReference &window)
{
    const auto answer = m_client.call({window.busName, u"/org/a11y/atspi/cache"_s}, u"Cache"_s, u"GetItems"_s);
    if (!answer || answer->isEmpty()) {
        return {};
    }
    const auto argument = answer->constFirst().value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1StringView(ATSPICacheItem::listSignature)) {
        return {};
    }
    QList<ATSPICacheItem> items;
    argument >> items;
    if (items.isEmpty()) {
        return {};
    }
    std::map<QString, const ATSPICacheItem *> byPath;
    for (const ATSPICacheItem &item : items) {
        byPath.emplace(item.element.path, &item);
    }
    const auto isInWindow = [&](const ATSPICacheItem &item) {
        const ATSPICacheItem *step = &item;
        for (std::size_t steps = 0; steps < byPath.size(); ++steps) {
            if (step->element.path == window.path) {
                return true;
            }
            const auto above = byPath.find(step->parent.path);
            if (above == byPath.end()) {
                return false;
            }
            step = above->second;
        }
        return false;
    };
    Result result{Way::exhausted, std::nullopt};
    int claims = 0;
    bool hasText = false;
    for (const ATSPICacheItem &item : items) {
        if (!item.states.has(ATSPIState::focused) || !isInWindow(item)) {
            continue;
        }
        ++claims;
        if (!hasText) {
            result.found = Found{item.element, false};
            hasText = item.hasText;
        }
    }
    if (result.found) {
        result.found->isOnlyClaim = claims == 1;
    }
    return result;
}

std::optional<ATSPIFocus::Found> ATSPIFocus::walk(const ATSPIReference &window)
{
    // Toolkits that never say "showing" would be pruned to nothing; the window itself tells.
    const bool saysShowing = m_client.states(window).has(ATSPIState::showing);
    std::vector<ATSPIReference> pending{window};
    std::optional<Found> focused;
    for (std::size_t step = 0; step < mostSteps && !pending.empty(); ++step) {
        if (!m_client.mayAsk(window.busName)) {
            return std::nullopt; // half a search is no answer
        }
        const ATSPIReference element = pending.back();
        pending.pop_back();
        const ATSPIStateSet states = m_client.states(element);
        if (states.has(ATSPIState::focused)) {
            if (m_client.hasText(element)) {
                return Found{element, false}; // the rest of the window was not looked at
            }
            focused = focused ? focused : std::optional(Found{element, false});
        }
        if ((saysShowing && !states.has(ATSPIState::showing)) || states.has(ATSPIState::managesDescendants) ||
            isPassedOver(m_client.role(element))) {
            continue;
        }
        const auto children = m_client.children(element);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return focused;
}

} // namespace orvesa
