#pragma once

// The stand-in for the Carbon Event Manager's hot keys. Main thread.

#include <Carbon/Carbon.h>

#include <optional>
#include <set>
#include <utility>

namespace orvesa::recorders {

/// One at a time.
class CarbonEvents final {
public:
    CarbonEvents();
    ~CarbonEvents();
    CarbonEvents(const CarbonEvents &) = delete;
    CarbonEvents &operator=(const CarbonEvents &) = delete;

    /// Presses keys. The handler's status; nothing when nobody has registered them or no handler is installed.
    std::optional<OSStatus> press(UInt32 keyCode, UInt32 modifiers);
    /// Hands an event with this parameter to the handler.
    OSStatus send(EventHotKeyID id);
    /// Hands an event without a parameter to the handler.
    OSStatus sendEmpty();
    /// Calls the installed handler without user data.
    OSStatus sendWithoutUserData();

    /// Another program has the combination.
    void takeByAnother(UInt32 keyCode, UInt32 modifiers) { takenByAnother.insert({keyCode, modifiers}); }

    [[nodiscard]] int registrations() const;
    [[nodiscard]] int handlers() const;

    OSStatus installStatus = noErr;
    OSStatus parameterStatus = noErr;
    std::set<std::pair<UInt32, UInt32>> takenByAnother;

private:
    OSStatus dispatch(EventRef event, void *userData);
};

} // namespace orvesa::recorders
