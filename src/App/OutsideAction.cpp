#include "App/OutsideAction.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr QLatin1StringView settingsName("settings");
constexpr QLatin1StringView promptPrefix("prompt:");

} // namespace

std::optional<OutsideAction> outsideAction(const QString &name)
{
    if (const auto action = fromRawValue<HotKeyAction>(name)) {
        return *action;
    }
    if (name == settingsName) {
        return OpenSettings{};
    }
    if (name.startsWith(promptPrefix) && name.size() > promptPrefix.size()) {
        return RunPrompt{name.mid(promptPrefix.size())};
    }
    return std::nullopt;
}

QString outsideActionNames()
{
    QStringList names;
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        names.append(rawValue(action));
    }
    names.append(settingsName);
    names.append(promptPrefix + "NAME-OR-ID"_L1);
    return names.join(u", "_s);
}

} // namespace orvesa
