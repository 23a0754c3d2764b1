#include "macos/recorders/Keychain.h"

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <condition_variable>

namespace orvesa::recorders {

struct Keychain::State {
    std::mutex mutex;
    std::condition_variable released;
    std::map<Identity, QByteArray> items;
    std::optional<OSStatus> status;
    bool isHeld = false;
};

namespace {

Keychain::State &state()
{
    static Keychain::State instance;
    return instance;
}

StringObject constant(const char *name)
{
    return StringObject(QString::fromLatin1(name), Object::Life::forEver);
}

StringObject className = constant("class");
StringObject genericPassword = constant("genp");
StringObject service = constant("svce");
StringObject account = constant("acct");
StringObject valueData = constant("v_Data");
StringObject returnData = constant("r_Data");
StringObject matchLimit = constant("m_Limit");
StringObject matchLimitOne = constant("m_LimitOne");

const DictionaryObject *dictionary(CFDictionaryRef reference, const char *use)
{
    return static_cast<const DictionaryObject *>(checked(reference, Kind::dictionary, use));
}

QString textUnder(const DictionaryObject &query, const char *key)
{
    const Object *const value = query.value(key);
    if (value == nullptr || value->kind() != Kind::string) {
        noteMisuse(std::string("a query without ") + key);
        return {};
    }
    return static_cast<const StringObject *>(value)->text;
}

Keychain::Identity identity(const DictionaryObject &query)
{
    if (query.value("class") != &genericPassword) {
        noteMisuse("a query of another class");
    }
    return {textUnder(query, "svce"), textUnder(query, "acct")};
}

QByteArray secret(const DictionaryObject &attributes)
{
    const Object *const value = attributes.value("v_Data");
    if (value == nullptr || value->kind() != Kind::data) {
        noteMisuse("no data to store");
        return {};
    }
    return static_cast<const DataObject *>(value)->bytes;
}

/// Notes the call and waits while calls are held; the scripted status if there is one.
std::optional<OSStatus> begin(const std::string &call, std::unique_lock<std::mutex> &lock)
{
    note(call);
    state().released.wait(lock, [] { return !state().isHeld; });
    return state().status;
}

} // namespace

Keychain::Keychain() : m_state(state())
{
    const std::lock_guard lock(m_state.mutex);
    m_state.items.clear();
    m_state.status.reset();
}

Keychain::~Keychain()
{
    let();
}

void Keychain::setItem(const Identity &identity, const QByteArray &data)
{
    const std::lock_guard lock(m_state.mutex);
    m_state.items[identity] = data;
}

std::optional<QByteArray> Keychain::item(const Identity &identity)
{
    const std::lock_guard lock(m_state.mutex);
    const auto found = m_state.items.find(identity);
    return found == m_state.items.end() ? std::nullopt : std::optional(found->second);
}

void Keychain::setStatus(std::optional<OSStatus> status)
{
    const std::lock_guard lock(m_state.mutex);
    m_state.status = status;
}

void Keychain::hold()
{
    const std::lock_guard lock(m_state.mutex);
    m_state.isHeld = true;
}

void Keychain::let()
{
    {
        const std::lock_guard lock(m_state.mutex);
        m_state.isHeld = false;
    }
    m_state.released.notify_all();
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

const CFStringRef kSecClass = referenceTo<CFStringRef>(&className);
const CFStringRef kSecClassGenericPassword = referenceTo<CFStringRef>(&genericPassword);
const CFStringRef kSecAttrService = referenceTo<CFStringRef>(&service);
const CFStringRef kSecAttrAccount = referenceTo<CFStringRef>(&account);
const CFStringRef kSecValueData = referenceTo<CFStringRef>(&valueData);
const CFStringRef kSecReturnData = referenceTo<CFStringRef>(&returnData);
const CFStringRef kSecMatchLimit = referenceTo<CFStringRef>(&matchLimit);
const CFStringRef kSecMatchLimitOne = referenceTo<CFStringRef>(&matchLimitOne);

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef *result)
{
    const DictionaryObject *const object = dictionary(query, "SecItemCopyMatching");
    std::unique_lock lock(state().mutex);
    if (const auto status = begin("SecItemCopyMatching " + object->description(), lock)) {
        return *status;
    }
    const auto found = state().items.find(identity(*object));
    if (found == state().items.end()) {
        return errSecItemNotFound;
    }
    if (object->value("r_Data") == referenceTo<Object *>(reinterpret_cast<const Object *>(kCFBooleanTrue))) {
        *result = referenceTo<CFTypeRef>(new DataObject(found->second));
    }
    return errSecSuccess;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef *)
{
    const DictionaryObject *const object = dictionary(attributes, "SecItemAdd");
    std::unique_lock lock(state().mutex);
    if (const auto status = begin("SecItemAdd " + object->description(), lock)) {
        return *status;
    }
    const bool isAdded = state().items.try_emplace(identity(*object), secret(*object)).second;
    return isAdded ? errSecSuccess : errSecDuplicateItem;
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate)
{
    const DictionaryObject *const object = dictionary(query, "SecItemUpdate");
    const DictionaryObject *const change = dictionary(attributesToUpdate, "SecItemUpdate");
    std::unique_lock lock(state().mutex);
    if (const auto status =
            begin("SecItemUpdate " + object->description().append(" ").append(change->description()), lock)) {
        return *status;
    }
    const auto found = state().items.find(identity(*object));
    if (found == state().items.end()) {
        return errSecItemNotFound;
    }
    found->second = secret(*change);
    return errSecSuccess;
}

OSStatus SecItemDelete(CFDictionaryRef query)
{
    const DictionaryObject *const object = dictionary(query, "SecItemDelete");
    std::unique_lock lock(state().mutex);
    if (const auto status = begin("SecItemDelete " + object->description(), lock)) {
        return *status;
    }
    return state().items.erase(identity(*object)) != 0 ? errSecSuccess : errSecItemNotFound;
}

} // extern "C"
