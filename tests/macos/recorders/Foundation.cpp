#include "macos/recorders/Foundation.h"

#include "macos/recorders/RecordedCalls.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <memory>

namespace orvesa::recorders {

namespace {

DefaultsDatabase *currentDatabase = nullptr;

Object standardDefaults(Kind::userDefaults, Object::Life::forEver);
Object defaultCenter(Kind::notificationCenter, Object::Life::forEver);

class ObserverObject final : public Object {
public:
    ObserverObject(QString notification, const void *given)
        : Object(Kind::observer), name(std::move(notification)), block(given)
    {
    }

    const QString name;
    const KeptBlock block;
};

std::vector<ObserverObject *> &observerList()
{
    static std::vector<ObserverObject *> instance;
    return instance;
}

QString text(const Object *object)
{
    const Object *const string = checked(object, Kind::string, "a text");
    return string == nullptr ? QString() : static_cast<const StringObject *>(string)->text;
}

Object *boolean(bool value)
{
    return referenceTo<Object *>(reinterpret_cast<const Object *>(value ? kCFBooleanTrue : kCFBooleanFalse));
}

bool isEqual(const Object *left, const Object *right)
{
    if (left == nullptr || right == nullptr || left->kind() != right->kind()) {
        return false;
    }
    switch (left->kind()) {
    case Kind::string:
        return text(left) == text(right);
    case Kind::data:
        return static_cast<const DataObject *>(left)->bytes == static_cast<const DataObject *>(right)->bytes;
    case Kind::number:
        return static_cast<const NumberObject *>(left)->value == static_cast<const NumberObject *>(right)->value;
    default:
        return left == right;
    }
}

unsigned long giveAll(Enumeration *enumeration, std::vector<Object *> &all)
{
    static unsigned long unchanged = 0;
    if (enumeration->state != 0) {
        return 0;
    }
    enumeration->state = 1;
    enumeration->items = all.data();
    enumeration->mutations = &unchanged;
    return all.size();
}

// Arrays.
unsigned long enumerateArray(ArrayObject *self, const Selector *, Enumeration *enumeration, Object **, unsigned long)
{
    return giveAll(enumeration, self->entries);
}

unsigned long arrayCount(const ArrayObject *self, const Selector *)
{
    return self->entries.size();
}

Object *arrayEntry(const ArrayObject *self, const Selector *, unsigned long index)
{
    if (index >= self->entries.size()) {
        noteMisuse("an index beyond the array, which throws");
        return nullptr;
    }
    return self->entries[index];
}

Object *newArray(const ClassObject *, const Selector *)
{
    return autoreleased(new ArrayObject({}));
}

void addToArray(ArrayObject *self, const Selector *, Object *entry)
{
    self->append(entry);
}

// Dictionaries.
unsigned long enumerateDictionary(const DictionaryObject *self, const Selector *, Enumeration *enumeration, Object **,
                                  unsigned long)
{
    static std::vector<Object *> keys;
    keys.clear();
    std::ranges::transform(self->entries, std::back_inserter(keys), [](const auto &entry) { return entry.first; });
    return giveAll(enumeration, keys);
}

Object *dictionaryValue(const DictionaryObject *self, const Selector *, const Object *key)
{
    const auto found =
        std::ranges::find_if(self->entries, [key](const auto &entry) { return isEqual(entry.first, key); });
    return found == self->entries.end() ? nullptr : found->second;
}

signed char isEqualDictionary(const DictionaryObject *self, const Selector *selector, const DictionaryObject *other)
{
    const bool hasAll = other != nullptr && self->entries.size() == other->entries.size() &&
                        std::ranges::all_of(self->entries, [&](const auto &entry) {
                            return isEqual(dictionaryValue(other, selector, entry.first), entry.second);
                        });
    return hasAll ? 1 : 0;
}

// Numbers.
Object *numberWithBool(const ClassObject *, const Selector *, signed char value)
{
    return boolean(value != 0);
}

Object *numberWithLongLong(const ClassObject *, const Selector *, long long value)
{
    return autoreleased(new NumberObject(std::int64_t{value}));
}

Object *numberWithDouble(const ClassObject *, const Selector *, double value)
{
    return autoreleased(new NumberObject(value));
}

signed char boolValue(const Object *self, const Selector *)
{
    return self == boolean(true) ? 1 : 0;
}

long long longLongValue(const NumberObject *self, const Selector *)
{
    return std::get<std::int64_t>(self->value);
}

double doubleValue(const NumberObject *self, const Selector *)
{
    return std::get<double>(self->value);
}

// The database.
Object *standardUserDefaults(const ClassObject *, const Selector *)
{
    return &standardDefaults;
}

Object *objectForKey(const Object *, const Selector *, const Object *key)
{
    return DefaultsDatabase::current()->value(text(key));
}

void setObjectForKey(const Object *, const Selector *, Object *value, const Object *key)
{
    if (checked(value, "a value of the preferences") != nullptr) {
        value->retain();
        DefaultsDatabase::current()->set(DefaultsDatabase::current()->ownDomain(), text(key), value);
    }
}

void removeObjectForKey(const Object *, const Selector *, const Object *key)
{
    DefaultsDatabase::current()->set(DefaultsDatabase::current()->ownDomain(), text(key), nullptr);
}

Object *persistentDomain(const Object *, const Selector *, const Object *name)
{
    Object *const domain = DefaultsDatabase::current()->domain(text(name));
    return domain == nullptr ? nullptr : autoreleased(domain);
}

// Notifications.
Object *center(const ClassObject *, const Selector *)
{
    return &defaultCenter;
}

Object *addObserver(const Object *, const Selector *, const Object *name, const Object *object, const Object *queue,
                    const void *block)
{
    if (object != nullptr || queue != nullptr) {
        noteMisuse("an observer of one object, or with a queue");
    }
    // The centre's own reference.
    observerList().push_back(new ObserverObject(text(name), block));
    return observerList().back();
}

void removeObserver(const Object *, const Selector *, Object *observer)
{
    if (std::erase(observerList(), observer) == 0) {
        noteMisuse("removal of what does not observe");
        return;
    }
    observer->release();
}

} // namespace

DefaultsDatabase::DefaultsDatabase(QString ownDomain) : m_ownDomain(std::move(ownDomain))
{
    currentDatabase = this;
}

DefaultsDatabase::~DefaultsDatabase()
{
    for (const auto &[name, domain] : m_domains) {
        for (const auto &[key, value] : domain) {
            value->release();
        }
    }
    currentDatabase = nullptr;
}

DefaultsDatabase *DefaultsDatabase::current()
{
    return currentDatabase;
}

void DefaultsDatabase::set(const QString &domain, const QString &key, Object *value)
{
    Domain &values = m_domains[domain];
    if (const auto found = values.find(key); found != values.end()) {
        found->second->release();
        values.erase(found);
    }
    if (value != nullptr) {
        values[key] = value;
    }
}

Object *DefaultsDatabase::value(const QString &key) const
{
    const auto domain = m_domains.find(m_ownDomain);
    if (domain == m_domains.end()) {
        return nullptr;
    }
    const auto found = domain->second.find(key);
    return found == domain->second.end() ? nullptr : found->second;
}

Object *DefaultsDatabase::domain(const QString &name) const
{
    const auto domain = m_domains.find(name);
    if (domain == m_domains.end() || domain->second.empty()) {
        return nullptr;
    }
    std::vector<std::pair<Object *, Object *>> entries;
    for (const auto &[key, value] : domain->second) {
        entries.emplace_back(new StringObject(key), value);
    }
    auto *const made = new DictionaryObject(entries, DictionaryObject::Retaining::keysAndValues);
    std::ranges::for_each(entries, [](const auto &entry) { entry.first->release(); });
    return made;
}

void postNotification(const QString &name)
{
    for (ObserverObject *const observer : std::vector(observerList())) {
        if (observer->name == name) {
            observer->retain();
            observer->block.call(nullptr);
            observer->release();
        }
    }
}

std::size_t observers()
{
    return observerList().size();
}

MethodTable foundationMethods()
{
    return {{{"NSArray", "countByEnumeratingWithState:objects:count:"}, method(&enumerateArray)},
            {{"NSArray", "count"}, method(&arrayCount)},
            {{"NSArray", "objectAtIndexedSubscript:"}, method(&arrayEntry)},
            {{"+NSMutableArray", "array"}, method(&newArray)},
            {{"NSArray", "addObject:"}, method(&addToArray)},
            {{"NSDictionary", "countByEnumeratingWithState:objects:count:"}, method(&enumerateDictionary)},
            {{"NSDictionary", "objectForKeyedSubscript:"}, method(&dictionaryValue)},
            {{"NSDictionary", "isEqualToDictionary:"}, method(&isEqualDictionary)},
            {{"+NSNumber", "numberWithBool:"}, method(&numberWithBool)},
            {{"+NSNumber", "numberWithLongLong:"}, method(&numberWithLongLong)},
            {{"+NSNumber", "numberWithDouble:"}, method(&numberWithDouble)},
            {{"NSNumber", "boolValue"}, method(&boolValue)},
            {{"NSNumber", "longLongValue"}, method(&longLongValue)},
            {{"NSNumber", "doubleValue"}, method(&doubleValue)},
            {{"+NSUserDefaults", "standardUserDefaults"}, method(&standardUserDefaults)},
            {{"NSUserDefaults", "objectForKey:"}, method(&objectForKey)},
            {{"NSUserDefaults", "setObject:forKey:"}, method(&setObjectForKey)},
            {{"NSUserDefaults", "removeObjectForKey:"}, method(&removeObjectForKey)},
            {{"NSUserDefaults", "persistentDomainForName:"}, method(&persistentDomain)},
            {{"+NSNotificationCenter", "defaultCenter"}, method(&center)},
            {{"NSNotificationCenter", "addObserverForName:object:queue:usingBlock:"}, method(&addObserver)},
            {{"NSNotificationCenter", "removeObserver:"}, method(&removeObserver)}};
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

// Qt's conversions, which it has on macOS only, under the names that they have there.
Object *toNSString(const QString *text) asm("_ZNK7QString10toNSStringEv");
QString fromNSString(const Object *string) asm("_ZN7QString12fromNSStringEPK8NSString");
Object *toNSData(const QByteArray *bytes) asm("_ZNK10QByteArray8toNSDataEv");
QByteArray fromNSData(const Object *data) asm("_ZN10QByteArray10fromNSDataEPK6NSData");

Object *toNSString(const QString *text)
{
    return autoreleased(new StringObject(*text));
}

QString fromNSString(const Object *string)
{
    return string == nullptr ? QString() : text(string);
}

Object *toNSData(const QByteArray *bytes)
{
    return autoreleased(new DataObject(*bytes));
}

QByteArray fromNSData(const Object *data)
{
    const Object *const object = data == nullptr ? nullptr : checked(data, Kind::data, "data");
    return object == nullptr ? QByteArray() : static_cast<const DataObject *>(object)->bytes;
}

extern "C" {

#define ORVESA_CLASS(name)                                                                                             \
    ClassObject _OBJC_CLASS_##name(#name);                                                                             \
    int __objc_class_name_##name = 0;

ORVESA_CLASS(NSArray)
ORVESA_CLASS(NSData)
ORVESA_CLASS(NSMutableArray)
ORVESA_CLASS(NSNotificationCenter)
ORVESA_CLASS(NSNumber)
ORVESA_CLASS(NSString)
ORVESA_CLASS(NSUserDefaults)

#undef ORVESA_CLASS

} // extern "C"
