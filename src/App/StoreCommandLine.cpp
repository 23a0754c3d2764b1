#include "App/StoreCommandLine.h"

using namespace Qt::StringLiterals;

namespace orvesa::StoreCommandLine {

using namespace CommandLine;

Request parseSettings(const QStringList &words)
{
    using Action = Settings::Action;
    const QString verb = words.value(0);
    const qsizetype given = words.size() - 1;
    if (verb == "list"_L1 && given == 0) {
        return Settings{Action::list, {}, {}};
    }
    if (verb == "get"_L1 && given == 1) {
        return Settings{Action::get, words.at(1), {}};
    }
    if (verb == "reset"_L1 && given == 1) {
        return Settings{Action::reset, words.at(1), {}};
    }
    if (verb == "set"_L1 && given == 2) {
        return Settings{Action::set, words.at(1), words.at(2)};
    }
    return UsageError{u"settings takes: list, get KEY, set KEY VALUE, reset KEY"_s};
}

Request parseKey(const QStringList &words)
{
    using Action = Key::Action;
    const QString verb = words.value(0);
    if (verb == "status"_L1 && words.size() == 1) {
        return Key{Action::status, std::nullopt};
    }
    const auto provider = fromRawValue<AIProviderType>(words.value(1));
    const bool isForProvider = verb == "set"_L1 || verb == "clear"_L1;
    // The words themselves are not repeated: somebody may have typed a key.
    if (!isForProvider || words.size() != 2 || !provider) {
        QStringList providers;
        for (const AIProviderType type : allCases<AIProviderType>()) {
            providers.append(rawValue(type));
        }
        return UsageError{u"key takes: set PROVIDER, clear PROVIDER, status; PROVIDER is one of %1; the key itself is "
                          u"read from standard input"_s.arg(providers.join(u", "_s))};
    }
    return Key{verb == "set"_L1 ? Action::set : Action::clear, provider};
}

} // namespace orvesa::StoreCommandLine
