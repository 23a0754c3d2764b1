#include "macos/recorders/Object.h"

#include "macos/recorders/RecordedCalls.h"

#include <algorithm>
#include <mutex>
#include <set>

namespace orvesa::recorders {

namespace {

struct Register {
    std::mutex mutex;
    std::set<const void *> living;
    int counted = 0;
};

Register &objects()
{
    static Register instance;
    return instance;
}

} // namespace

Object::Object(Kind kind, Life life) : m_kind(kind), m_life(life)
{
    const std::lock_guard lock(objects().mutex);
    objects().living.insert(this);
    objects().counted += life == Life::counted ? 1 : 0;
}

Object::~Object()
{
    const std::lock_guard lock(objects().mutex);
    objects().living.erase(this);
    objects().counted -= m_life == Life::counted ? 1 : 0;
}

void Object::retain()
{
    if (m_life == Life::counted) {
        ++m_references;
    }
}

void Object::release()
{
    if (m_life == Life::counted && --m_references == 0) {
        delete this;
    }
}

int liveObjects()
{
    const std::lock_guard lock(objects().mutex);
    return objects().counted;
}

Object *checked(const void *reference, const char *use)
{
    {
        const std::lock_guard lock(objects().mutex);
        if (objects().living.contains(reference)) {
            return static_cast<Object *>(const_cast<void *>(reference));
        }
    }
    noteMisuse(std::string(use) + (reference == nullptr ? " of null" : " of a freed object"));
    return nullptr;
}

Object *checked(const void *reference, Kind kind, const char *use)
{
    Object *const object = checked(reference, use);
    if (object != nullptr && object->kind() != kind) {
        noteMisuse(std::string(use) + " of an object of another type");
        return nullptr;
    }
    return object;
}

ArrayObject::ArrayObject(std::vector<Object *> list) : Object(Kind::array), entries(std::move(list))
{
    std::ranges::for_each(entries, &Object::retain);
}

void ArrayObject::append(Object *entry)
{
    entry->retain();
    entries.push_back(entry);
}

ArrayObject::~ArrayObject()
{
    std::ranges::for_each(entries, &Object::release);
}

DictionaryObject::DictionaryObject(std::vector<std::pair<Object *, Object *>> pairs, Retaining retaining)
    : Object(Kind::dictionary), entries(std::move(pairs)), m_retaining(retaining)
{
    for (const auto &[key, value] : entries) {
        if (m_retaining == Retaining::keysAndValues) {
            key->retain();
            value->retain();
        }
    }
}

DictionaryObject::~DictionaryObject()
{
    for (const auto &[key, value] : entries) {
        if (m_retaining == Retaining::keysAndValues) {
            key->release();
            value->release();
        }
    }
}

std::string DictionaryObject::description() const
{
    std::string text = "{";
    for (const auto &[key, value] : entries) {
        const Object *const livingKey = checked(key, "a dictionary's key");
        const Object *const livingValue = checked(value, "a dictionary's value");
        text += text.size() > 1 ? ", " : "";
        text += (livingKey != nullptr ? livingKey->description() : "?") + ": " +
                (livingValue != nullptr ? livingValue->description() : "?");
    }
    return text + "}";
}

Object *DictionaryObject::value(const char *key) const
{
    const auto found =
        std::ranges::find_if(entries, [key](const auto &entry) { return entry.first->description() == key; });
    return found == entries.end() ? nullptr : found->second;
}

} // namespace orvesa::recorders
