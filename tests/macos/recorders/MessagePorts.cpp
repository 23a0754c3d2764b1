#include "macos/recorders/MessagePorts.h"

#include "macos/recorders/Object.h"
#include "macos/recorders/RecordedCalls.h"

#include <map>
#include <set>

namespace orvesa::recorders {

namespace {

class PortObject;

struct State {
    std::set<QString> elsewhere;
    std::map<QString, PortObject *> local;
    std::set<QString> served;
    QByteArray lastRequest;
    bool isAvailable = true;
    bool isAnswering = true;
};

State &state()
{
    static State instance;
    return instance;
}

class PortObject final : public Object {
public:
    explicit PortObject(QString portName) : Object(Kind::messagePort), name(std::move(portName)) {}
    ~PortObject() override { invalidate(); }

    void invalidate()
    {
        if (const auto found = state().local.find(name); found != state().local.end() && found->second == this) {
            state().local.erase(found);
            state().served.erase(name);
        }
    }

    const QString name;
    CFMessagePortCallBack callBack = nullptr;
    void *info = nullptr;
};

class SourceObject final : public Object {
public:
    explicit SourceObject(PortObject &servedPort) : Object(Kind::runLoopSource), port(servedPort) {}

    PortObject &port;
};

QString text(CFStringRef reference)
{
    return static_cast<const StringObject *>(checked(reference, Kind::string, "a port's name"))->text;
}

StringObject defaultMode(QStringLiteral("default mode"), Object::Life::forEver);
StringObject commonModes(QStringLiteral("common modes"), Object::Life::forEver);
Object mainRunLoop(Kind::runLoopSource, Object::Life::forEver);

} // namespace

void claimPortElsewhere(const QString &name)
{
    state().elsewhere.insert(name);
}

void releasePortsElsewhere()
{
    state().elsewhere.clear();
}

void setPortsAvailable(bool isAvailable)
{
    state().isAvailable = isAvailable;
}

bool isServed(const QString &name)
{
    return state().served.contains(name);
}

QByteArray lastRequest()
{
    return state().lastRequest;
}

void setAnswering(bool isAnswering)
{
    state().isAnswering = isAnswering;
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

const CFRunLoopMode kCFRunLoopDefaultMode = referenceTo<CFStringRef>(&defaultMode);
const CFRunLoopMode kCFRunLoopCommonModes = referenceTo<CFStringRef>(&commonModes);

CFRunLoopRef CFRunLoopGetMain(void)
{
    return referenceTo<CFRunLoopRef>(&mainRunLoop);
}

void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode)
{
    auto *const object = static_cast<SourceObject *>(checked(source, Kind::runLoopSource, "CFRunLoopAddSource"));
    if (object != nullptr && mode == kCFRunLoopCommonModes) {
        state().served.insert(object->port.name);
    }
}

CFMessagePortRef CFMessagePortCreateLocal(CFAllocatorRef, CFStringRef name, CFMessagePortCallBack callout,
                                          CFMessagePortContext *context, Boolean *)
{
    note("CFMessagePortCreateLocal " + text(name).toStdString());
    if (!state().isAvailable || state().elsewhere.contains(text(name))) {
        return nullptr;
    }
    auto *const port = new PortObject(text(name));
    port->callBack = callout;
    port->info = context->info;
    state().local[port->name] = port;
    return referenceTo<CFMessagePortRef>(port);
}

CFMessagePortRef CFMessagePortCreateRemote(CFAllocatorRef, CFStringRef name)
{
    note("CFMessagePortCreateRemote " + text(name).toStdString());
    const bool exists = state().elsewhere.contains(text(name)) || state().local.contains(text(name));
    return state().isAvailable && exists ? referenceTo<CFMessagePortRef>(new PortObject(text(name))) : nullptr;
}

void CFMessagePortInvalidate(CFMessagePortRef ms)
{
    note("CFMessagePortInvalidate");
    if (Object *const port = checked(ms, Kind::messagePort, "CFMessagePortInvalidate")) {
        static_cast<PortObject *>(port)->invalidate();
    }
}

SInt32 CFMessagePortSendRequest(CFMessagePortRef remote, SInt32 msgid, CFDataRef data, CFTimeInterval sendTimeout,
                                CFTimeInterval rcvTimeout, CFStringRef replyMode, CFDataRef *returnData)
{
    const auto *const port =
        static_cast<const PortObject *>(checked(remote, Kind::messagePort, "CFMessagePortSendRequest"));
    state().lastRequest = static_cast<const DataObject *>(checked(data, Kind::data, "CFMessagePortSendRequest"))->bytes;
    note("CFMessagePortSendRequest within " + std::to_string(static_cast<int>(sendTimeout + rcvTimeout)) + " s" +
         (replyMode == nullptr ? "" : ", waits"));
    if (!state().isAnswering) {
        return kCFMessagePortReceiveTimeout;
    }
    if (const auto local = state().local.find(port->name); local != state().local.end()) {
        if (!state().served.contains(port->name)) {
            return kCFMessagePortReceiveTimeout;
        }
        *returnData =
            local->second->callBack(referenceTo<CFMessagePortRef>(local->second), msgid, data, local->second->info);
    }
    return kCFMessagePortSuccess;
}

CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(CFAllocatorRef, CFMessagePortRef local, CFIndex)
{
    auto *const port = static_cast<PortObject *>(checked(local, Kind::messagePort, "CFMessagePortCreateRunLoopSource"));
    return port == nullptr ? nullptr : referenceTo<CFRunLoopSourceRef>(new SourceObject(*port));
}

} // extern "C"
