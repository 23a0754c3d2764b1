// Errors of Core Foundation, of which the system words some and only numbers the others.

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <CFNetwork/CFNetwork.h>

using namespace orvesa::recorders;

namespace {

class ErrorObject final : public Object {
public:
    explicit ErrorObject(CFIndex number) : Object(Kind::error), code(number) {}

    const CFIndex code;
};

StringObject networkDomain(QStringLiteral("kCFErrorDomainCFNetwork"), Object::Life::forEver);

} // namespace

extern "C" {

const CFStringRef kCFErrorDomainCFNetwork = referenceTo<CFStringRef>(&networkDomain);

CFErrorRef CFErrorCreate(CFAllocatorRef, CFErrorDomain domain, CFIndex code, CFDictionaryRef)
{
    const Object *const name = checked(domain, Kind::string, "CFErrorCreate");
    note((name == nullptr ? std::string() : name->description()).append(" ").append(std::to_string(code)));
    return referenceTo<CFErrorRef>(new ErrorObject(code));
}

CFStringRef CFErrorCopyDescription(CFErrorRef err)
{
    const auto *const object = static_cast<const ErrorObject *>(checked(err, Kind::error, "CFErrorCopyDescription"));
    if (object == nullptr) {
        return nullptr;
    }
    const QString text = object->code == kCFURLErrorTimedOut
                             ? QStringLiteral("要求がタイムアウトになりました。")
                             : QStringLiteral("Not completed. (kCFErrorDomainCFNetwork error %1.)").arg(object->code);
    return referenceTo<CFStringRef>(new StringObject(text));
}

} // extern "C"
