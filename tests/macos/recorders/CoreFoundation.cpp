// Core Foundation's functions over the recorders' objects. Run loops and message ports are in MessagePorts.cpp.

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <CoreFoundation/CoreFoundation.h>

#include <QByteArray>

#include <algorithm>

using namespace orvesa::recorders;

namespace {

template <typename Type>
const Type *as(const void *reference, Kind kind, const char *use)
{
    return static_cast<const Type *>(checked(reference, kind, use));
}

BooleanObject trueObject(true);
BooleanObject falseObject(false);

} // namespace

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = referenceTo<CFBooleanRef>(&trueObject);
const CFBooleanRef kCFBooleanFalse = referenceTo<CFBooleanRef>(&falseObject);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeID CFGetTypeID(CFTypeRef cf)
{
    const Object *const object = checked(cf, "CFGetTypeID");
    return object == nullptr ? 0 : static_cast<CFTypeID>(object->kind());
}

CFTypeRef CFRetain(CFTypeRef cf)
{
    if (Object *const object = checked(cf, "CFRetain")) {
        object->retain();
    }
    return cf;
}

void CFRelease(CFTypeRef cf)
{
    if (Object *const object = checked(cf, "CFRelease")) {
        object->release();
    }
}

CFTypeID CFStringGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::string);
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar *chars, CFIndex numChars)
{
    return referenceTo<CFStringRef>(
        new StringObject(QString(reinterpret_cast<const QChar *>(chars), static_cast<qsizetype>(numChars))));
}

CFIndex CFStringGetLength(CFStringRef theString)
{
    const auto *const object = as<StringObject>(theString, Kind::string, "CFStringGetLength");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->text.size());
}

void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar *buffer)
{
    const auto *const object = as<StringObject>(theString, Kind::string, "CFStringGetCharacters");
    if (object == nullptr || range.location < 0 || range.length < 0 ||
        range.location + range.length > static_cast<CFIndex>(object->text.size())) {
        noteMisuse("CFStringGetCharacters beyond the text");
        return;
    }
    std::copy_n(object->text.utf16() + range.location, range.length, buffer);
}

CFTypeID CFDataGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::data);
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8 *bytes, CFIndex length)
{
    return referenceTo<CFDataRef>(
        new DataObject(QByteArray(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(length))));
}

CFIndex CFDataGetLength(CFDataRef theData)
{
    const auto *const object = as<DataObject>(theData, Kind::data, "CFDataGetLength");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->bytes.size());
}

const UInt8 *CFDataGetBytePtr(CFDataRef theData)
{
    const auto *const object = as<DataObject>(theData, Kind::data, "CFDataGetBytePtr");
    return object == nullptr ? nullptr : reinterpret_cast<const UInt8 *>(object->bytes.constData());
}

CFTypeID CFBooleanGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::boolean);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean)
{
    const auto *const object = as<BooleanObject>(boolean, Kind::boolean, "CFBooleanGetValue");
    return object != nullptr && object->value ? 1 : 0;
}

CFTypeID CFNumberGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::number);
}

Boolean CFNumberIsFloatType(CFNumberRef number)
{
    const auto *const object = as<NumberObject>(number, Kind::number, "CFNumberIsFloatType");
    return object != nullptr && std::holds_alternative<double>(object->value) ? 1 : 0;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void *valuePtr)
{
    const auto *const object = as<NumberObject>(number, Kind::number, "CFNumberGetValue");
    if (object == nullptr || theType != kCFNumberSInt64Type || !std::holds_alternative<std::int64_t>(object->value)) {
        return 0;
    }
    *static_cast<std::int64_t *>(valuePtr) = std::get<std::int64_t>(object->value);
    return 1;
}

CFTypeID CFArrayGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::array);
}

CFIndex CFArrayGetCount(CFArrayRef theArray)
{
    const auto *const object = as<ArrayObject>(theArray, Kind::array, "CFArrayGetCount");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->entries.size());
}

const void *CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx)
{
    const auto *const object = as<ArrayObject>(theArray, Kind::array, "CFArrayGetValueAtIndex");
    if (object == nullptr || idx < 0 || idx >= static_cast<CFIndex>(object->entries.size())) {
        noteMisuse("CFArrayGetValueAtIndex beyond the list");
        return nullptr;
    }
    return object->entries[static_cast<std::size_t>(idx)];
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void **keys, const void **values, CFIndex numValues,
                                   const CFDictionaryKeyCallBacks *keyCallBacks,
                                   const CFDictionaryValueCallBacks *valueCallBacks)
{
    const bool isRetaining =
        keyCallBacks == &kCFTypeDictionaryKeyCallBacks && valueCallBacks == &kCFTypeDictionaryValueCallBacks;
    std::vector<std::pair<Object *, Object *>> entries;
    for (CFIndex index = 0; index < numValues; ++index) {
        Object *const key = checked(keys[index], Kind::string, "CFDictionaryCreate");
        Object *const value = checked(values[index], "CFDictionaryCreate");
        if (key != nullptr && value != nullptr) {
            entries.emplace_back(key, value);
        }
    }
    return referenceTo<CFDictionaryRef>(
        new DictionaryObject(std::move(entries), isRetaining ? DictionaryObject::Retaining::keysAndValues
                                                             : DictionaryObject::Retaining::nothing));
}

} // extern "C"
