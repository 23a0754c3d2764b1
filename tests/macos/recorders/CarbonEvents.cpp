#include "macos/recorders/CarbonEvents.h"

#include "macos/recorders/RecordedCalls.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <string>

// What stands behind Carbon's opaque references.
struct OpaqueEventRef {
    std::optional<EventHotKeyID> id;
};
struct OpaqueEventHandlerRef {
    EventHandlerUPP function;
    void *userData;
};
struct OpaqueEventTargetRef {};
struct OpaqueEventHotKeyRef {
    UInt32 keyCode;
    UInt32 modifiers;
    EventHotKeyID id;
};

namespace orvesa::recorders {

namespace {

struct State {
    CarbonEvents *events = nullptr;
    OpaqueEventTargetRef applicationTarget;
    std::map<EventHandlerRef, std::unique_ptr<OpaqueEventHandlerRef>> handlers;
    std::map<EventHotKeyRef, std::unique_ptr<OpaqueEventHotKeyRef>> hotKeys;
};

State &state()
{
    static State instance;
    return instance;
}

std::string fourCharacters(UInt32 code)
{
    std::string text(1, '\'');
    for (int shift = 24; shift >= 0; shift -= 8) {
        text.push_back(static_cast<char>((code >> shift) & 0xff));
    }
    text.push_back('\'');
    return text;
}

} // namespace

CarbonEvents::CarbonEvents()
{
    state().events = this;
}

CarbonEvents::~CarbonEvents()
{
    state().events = nullptr;
    state().handlers.clear();
    state().hotKeys.clear();
}

int CarbonEvents::registrations() const
{
    return static_cast<int>(state().hotKeys.size());
}

int CarbonEvents::handlers() const
{
    return static_cast<int>(state().handlers.size());
}

std::optional<OSStatus> CarbonEvents::press(UInt32 keyCode, UInt32 modifiers)
{
    for (const auto &[reference, hotKey] : state().hotKeys) {
        if (hotKey->keyCode == keyCode && hotKey->modifiers == modifiers) {
            return state().handlers.empty() ? std::nullopt : std::optional(send(hotKey->id));
        }
    }
    return std::nullopt;
}

OSStatus CarbonEvents::send(EventHotKeyID id)
{
    OpaqueEventRef event{id};
    return dispatch(&event, state().handlers.empty() ? nullptr : state().handlers.begin()->second->userData);
}

OSStatus CarbonEvents::sendEmpty()
{
    OpaqueEventRef event;
    return dispatch(&event, state().handlers.begin()->second->userData);
}

OSStatus CarbonEvents::sendWithoutUserData()
{
    OpaqueEventRef event;
    return dispatch(&event, nullptr);
}

OSStatus CarbonEvents::dispatch(EventRef event, void *userData)
{
    if (state().handlers.empty()) {
        return eventNotHandledErr;
    }
    return state().handlers.begin()->second->function(nullptr, event, userData);
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

EventTargetRef GetApplicationEventTarget(void)
{
    return &state().applicationTarget;
}

OSStatus InstallEventHandler(EventTargetRef inTarget, EventHandlerUPP inHandler, ItemCount inNumTypes,
                             const EventTypeSpec *inList, void *inUserData, EventHandlerRef *outRef)
{
    std::string types;
    for (ItemCount index = 0; index < inNumTypes; ++index) {
        types.append(" ").append(fourCharacters(inList[index].eventClass));
        types.append(" ").append(std::to_string(inList[index].eventKind));
    }
    note("InstallEventHandler" + types);
    if (inTarget != &state().applicationTarget) {
        noteMisuse("InstallEventHandler on another target");
    }
    if (state().events->installStatus != noErr) {
        return state().events->installStatus;
    }
    auto handler = std::make_unique<OpaqueEventHandlerRef>(OpaqueEventHandlerRef{inHandler, inUserData});
    *outRef = handler.get();
    state().handlers.emplace(*outRef, std::move(handler));
    return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef inHandlerRef)
{
    note("RemoveEventHandler");
    if (state().handlers.erase(inHandlerRef) == 0) {
        noteMisuse("RemoveEventHandler of an unknown reference");
    }
    return noErr;
}

OSStatus GetEventParameter(EventRef inEvent, EventParamName inName, EventParamType inDesiredType, EventParamType *,
                           ByteCount inBufferSize, ByteCount *, void *outData)
{
    std::ostringstream text;
    text << "GetEventParameter " << fourCharacters(inName) << ' ' << fourCharacters(inDesiredType) << ' '
         << inBufferSize << " bytes";
    note(text.str());
    constexpr OSStatus notFound = -9870; // eventParameterNotFoundErr
    if (state().events->parameterStatus != noErr || !inEvent->id) {
        return state().events->parameterStatus != noErr ? state().events->parameterStatus : notFound;
    }
    std::memcpy(outData, &*inEvent->id, inBufferSize);
    return noErr;
}

OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers, EventHotKeyID inHotKeyID,
                             EventTargetRef inTarget, OptionBits inOptions, EventHotKeyRef *outRef)
{
    std::ostringstream text;
    text << "RegisterEventHotKey key " << inHotKeyCode << " modifiers 0x" << std::hex << inHotKeyModifiers << std::dec
         << " " << fourCharacters(inHotKeyID.signature) << " " << inHotKeyID.id << " options " << inOptions;
    note(text.str());
    if (inTarget != &state().applicationTarget) {
        noteMisuse("RegisterEventHotKey on another target");
    }
    const auto isSame = [&](const auto &entry) {
        return entry.second->keyCode == inHotKeyCode && entry.second->modifiers == inHotKeyModifiers;
    };
    if (std::ranges::any_of(state().hotKeys, isSame) ||
        state().events->takenByAnother.contains({inHotKeyCode, inHotKeyModifiers})) {
        return eventHotKeyExistsErr;
    }
    auto hotKey =
        std::make_unique<OpaqueEventHotKeyRef>(OpaqueEventHotKeyRef{inHotKeyCode, inHotKeyModifiers, inHotKeyID});
    *outRef = hotKey.get();
    state().hotKeys.emplace(*outRef, std::move(hotKey));
    return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef inHotKey)
{
    const auto found = state().hotKeys.find(inHotKey);
    if (found == state().hotKeys.end()) {
        return eventHotKeyInvalidErr;
    }
    note("UnregisterEventHotKey " + std::to_string(found->second->id.id));
    state().hotKeys.erase(found);
    return noErr;
}

} // extern "C"
