#include "macos/recorders/ObjectiveC.h"

#include "macos/recorders/RecordedCalls.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include <unwind.h>

namespace orvesa::recorders {

namespace {

/// A block as the compiler lays it out.
struct Block {
    void *isa;
    int flags;
    int reserved;
    void (*invoke)(Block *self, Object *parameter);
    struct Descriptor {
        unsigned long reserved;
        unsigned long size;
        void (*copy)(void *to, const void *from);
        void (*dispose)(const void *block);
    } * descriptor;
};

constexpr int hasHelpers = 1 << 25;
constexpr int isGlobal = 1 << 28;

std::vector<Object *> &pool()
{
    static std::vector<Object *> instance;
    return instance;
}

std::string className(const Object &object)
{
    static const std::map<Kind, std::string> names{{Kind::string, "NSString"},
                                                   {Kind::data, "NSData"},
                                                   {Kind::boolean, "NSNumber"},
                                                   {Kind::number, "NSNumber"},
                                                   {Kind::array, "NSArray"},
                                                   {Kind::dictionary, "NSDictionary"},
                                                   {Kind::pasteboard, "NSPasteboard"},
                                                   {Kind::pasteboardItem, "NSPasteboardItem"},
                                                   {Kind::userDefaults, "NSUserDefaults"},
                                                   {Kind::notificationCenter, "NSNotificationCenter"}};
    if (object.kind() == Kind::objectiveCClass) {
        return std::string("+").append(object.description());
    }
    const auto found = names.find(object.kind());
    return found == names.end() ? "NSObject" : found->second;
}

/// What every object and every class understands.
signed char isKindOfClass(const Object *self, const Selector *, const Object *asked)
{
    return asked != nullptr && className(*self) == asked->description() ? 1 : 0;
}

Object *classItself(Object *self, const Selector *)
{
    return self;
}

const MethodTable &methods()
{
    static const MethodTable table = [] {
        MethodTable all = foundationMethods();
        all.merge(appKitMethods());
        return all;
    }();
    return table;
}

/// What a message to nil does.
void *nothing()
{
    return nullptr;
}

} // namespace

Object *autoreleased(Object *object)
{
    pool().push_back(object);
    return object;
}

void drainPool()
{
    for (Object *const object : std::exchange(pool(), {})) {
        if (checked(object, "the pool's release") != nullptr) {
            object->release();
        }
    }
}

KeptBlock::KeptBlock(const void *block)
{
    const auto *const original = static_cast<const Block *>(block);
    m_block = std::malloc(original->descriptor->size);
    std::memcpy(m_block, block, original->descriptor->size);
    if ((original->flags & hasHelpers) != 0) {
        original->descriptor->copy(m_block, block);
    }
}

KeptBlock::~KeptBlock()
{
    const auto *const kept = static_cast<const Block *>(m_block);
    if ((kept->flags & hasHelpers) != 0 && (kept->flags & isGlobal) == 0) {
        kept->descriptor->dispose(m_block);
    }
    std::free(m_block);
}

void KeptBlock::call(Object *parameter) const
{
    auto *const kept = static_cast<Block *>(m_block);
    kept->invoke(kept, parameter);
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

void *_NSConcreteStackBlock[32];
void *_NSConcreteGlobalBlock[32];

_Unwind_Reason_Code __gxx_personality_v0(int, _Unwind_Action, _Unwind_Exception_Class, _Unwind_Exception *,
                                         _Unwind_Context *);
_Unwind_Reason_Code __gnu_objc_personality_v0(int version, _Unwind_Action actions, _Unwind_Exception_Class which,
                                              _Unwind_Exception *exception, _Unwind_Context *context)
{
    return __gxx_personality_v0(version, actions, which, exception, context);
}

void __objc_exec_class(void *) {}

MethodFunction objc_msg_lookup(Object *receiver, const Selector *selector)
{
    if (receiver == nullptr || checked(receiver, selector->name) == nullptr) {
        return method(&nothing);
    }
    const auto found = methods().find({className(*receiver), selector->name});
    if (found != methods().end()) {
        return found->second;
    }
    if (selector->name == std::string_view("isKindOfClass:")) {
        return method(&isKindOfClass);
    }
    if (selector->name == std::string_view("class") && receiver->kind() == Kind::objectiveCClass) {
        return method(&classItself);
    }
    noteMisuse(className(*receiver) + " does not understand " + selector->name);
    return method(&nothing);
}

Object *objc_retain(Object *object)
{
    if (object != nullptr && checked(object, "retain") != nullptr) {
        object->retain();
    }
    return object;
}

void objc_release(Object *object)
{
    if (object != nullptr && checked(object, "release") != nullptr) {
        object->release();
    }
}

void objc_storeStrong(Object **place, Object *object)
{
    (void)objc_retain(object);
    objc_release(std::exchange(*place, object));
}

Object *objc_autorelease(Object *object)
{
    return object == nullptr ? nullptr : autoreleased(object);
}

Object *objc_autoreleaseReturnValue(Object *object)
{
    return objc_autorelease(object);
}

Object *objc_retainAutoreleaseReturnValue(Object *object)
{
    return objc_autorelease(objc_retain(object));
}

Object *objc_retainAutorelease(Object *object)
{
    return objc_autorelease(objc_retain(object));
}

Object *objc_retainAutoreleasedReturnValue(Object *object)
{
    return objc_retain(object);
}

Object *objc_unsafeClaimAutoreleasedReturnValue(Object *object)
{
    return object;
}

void objc_enumerationMutation(Object *)
{
    noteMisuse("a collection that was changed while it was enumerated");
}

} // extern "C"
