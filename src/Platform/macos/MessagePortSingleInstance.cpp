#include "Platform/macos/MessagePortSingleInstance.h"

#include "Platform/macos/CFConversion.h"

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// Each way; a request and its answer take two seconds at most.
constexpr CFTimeInterval boundInSeconds = 1;

CFOwner<CFStringRef> portName(const QString &identifier)
{
    return CFConversion::string(identifier + ".instance"_L1);
}

CFOwner<CFMessagePortRef> remotePort(const QString &identifier)
{
    const CFOwner<CFStringRef> name = portName(identifier);
    return CFOwner(CFMessagePortCreateRemote(kCFAllocatorDefault, name.get()));
}

} // namespace

MessagePortSingleInstance::~MessagePortSingleInstance()
{
    if (m_port) {
        CFMessagePortInvalidate(m_port.get());
    }
}

SingleInstancePort::Claim MessagePortSingleInstance::claim(const QString &identifier, Handlers handlers)
{
    const CFOwner<CFStringRef> name = portName(identifier);
    CFMessagePortContext context = {0, this, nullptr, nullptr, nullptr};
    CFOwner port(CFMessagePortCreateLocal(kCFAllocatorDefault, name.get(), &MessagePortSingleInstance::received,
                                          &context, nullptr));
    if (!port) {
        return remotePort(identifier) ? Claim::runsAlready : Claim::unavailable;
    }
    m_port = std::move(port);
    m_handlers = std::move(handlers);
    const CFOwner source(CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, m_port.get(), 0));
    CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
    return Claim::owned;
}

bool MessagePortSingleInstance::ask(const QString &identifier, const QString &action)
{
    const CFOwner<CFMessagePortRef> port = remotePort(identifier);
    if (!port) {
        return false;
    }
    const CFOwner<CFDataRef> request = CFConversion::data(action.toUtf8());
    CFOwner<CFDataRef> answer;
    return CFMessagePortSendRequest(port.get(), 0, request.get(), boundInSeconds, boundInSeconds, kCFRunLoopDefaultMode,
                                    answer.receiver()) == kCFMessagePortSuccess;
}

CFDataRef MessagePortSingleInstance::received(CFMessagePortRef port, SInt32 message, CFDataRef data, void *info)
{
    Q_UNUSED(port)
    Q_UNUSED(message)
    const Handlers handlers = static_cast<const MessagePortSingleInstance *>(info)->m_handlers;
    const QString action = data == nullptr ? QString() : QString::fromUtf8(CFConversion::bytes(data));
    if (action.isEmpty() && handlers.activate) {
        handlers.activate();
    } else if (!action.isEmpty() && handlers.perform) {
        handlers.perform(action);
    }
    return nullptr; // an empty answer
}

} // namespace orvesa
