#include "macos/recorders/Accessibility.h"

#include "macos/recorders/RecordedCalls.h"

#include <sstream>

namespace orvesa::recorders {

namespace {

Accessibility *currentAccessibility = nullptr;

StringObject promptOption(QStringLiteral("AXTrustedCheckOptionPrompt"), Object::Life::forEver);

ElementObject *element(AXUIElementRef reference, const char *use)
{
    return static_cast<ElementObject *>(checked(reference, Kind::element, use));
}

std::string text(CFStringRef reference)
{
    const Object *const object = checked(reference, Kind::string, "a name");
    return object == nullptr ? std::string() : object->description();
}

AXUIElementRef handedOver(ElementObject &object)
{
    object.retain();
    return referenceTo<AXUIElementRef>(&object);
}

} // namespace

ElementObject::~ElementObject()
{
    for (const auto &[attribute, value] : attributes) {
        value->release();
    }
}

void ElementObject::setAttribute(const QString &attribute, Object *value)
{
    Object *&place = attributes[attribute];
    if (place != nullptr) {
        place->release();
    }
    place = value;
}

Accessibility::Accessibility() : m_systemWide(new ElementObject("systemWide"))
{
    currentAccessibility = this;
}

Accessibility::~Accessibility()
{
    currentAccessibility = nullptr;
    m_systemWide->release();
    for (const auto &[process, application] : m_applications) {
        application->release();
    }
}

Accessibility *Accessibility::current()
{
    return currentAccessibility;
}

ElementObject &Accessibility::application(pid_t process)
{
    ElementObject *&known = m_applications[process];
    if (known == nullptr) {
        known = new ElementObject("application " + std::to_string(process));
    }
    return *known;
}

ElementObject *Accessibility::handedOver(pid_t process)
{
    if (const auto found = m_applications.find(process); found != m_applications.end()) {
        found->second->retain();
        return found->second;
    }
    auto *const nobody = new ElementObject("no process");
    nobody->fail(kAXErrorInvalidUIElement);
    return nobody;
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

CFStringRef kAXTrustedCheckOptionPrompt = referenceTo<CFStringRef>(&promptOption);

Boolean AXIsProcessTrusted(void)
{
    note("AXIsProcessTrusted");
    return Accessibility::current()->isTrusted ? 1 : 0;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options)
{
    const Object *const object = checked(options, Kind::dictionary, "AXIsProcessTrustedWithOptions");
    note("AXIsProcessTrustedWithOptions " + (object == nullptr ? std::string() : object->description()));
    return Accessibility::current()->isTrusted ? 1 : 0;
}

CFTypeID AXUIElementGetTypeID(void)
{
    return static_cast<CFTypeID>(Kind::element);
}

AXUIElementRef AXUIElementCreateSystemWide(void)
{
    note("AXUIElementCreateSystemWide");
    return handedOver(Accessibility::current()->systemWide());
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid)
{
    note("AXUIElementCreateApplication " + std::to_string(pid));
    return referenceTo<AXUIElementRef>(Accessibility::current()->handedOver(pid));
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef reference, CFStringRef attribute, CFTypeRef *value)
{
    const ElementObject *const object = element(reference, "AXUIElementCopyAttributeValue");
    note("AXUIElementCopyAttributeValue " + (object == nullptr ? std::string() : object->name) + " " + text(attribute));
    if (object == nullptr || object->failure != kAXErrorSuccess) {
        return object == nullptr ? kAXErrorInvalidUIElement : object->failure;
    }
    const auto found = object->attributes.find(QString::fromStdString(text(attribute)));
    if (found == object->attributes.end()) {
        return kAXErrorNoValue;
    }
    found->second->retain();
    *value = found->second;
    return kAXErrorSuccess;
}

AXError AXUIElementPerformAction(AXUIElementRef reference, CFStringRef action)
{
    const ElementObject *const object = element(reference, "AXUIElementPerformAction");
    note("AXUIElementPerformAction " + (object == nullptr ? std::string() : object->name) + " " + text(action));
    if (object == nullptr || object->failure != kAXErrorSuccess) {
        return object == nullptr ? kAXErrorInvalidUIElement : object->failure;
    }
    return object->actions.contains(text(action)) ? kAXErrorSuccess : kAXErrorActionUnsupported;
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef reference, float timeoutInSeconds)
{
    const ElementObject *const object = element(reference, "AXUIElementSetMessagingTimeout");
    std::ostringstream seconds;
    seconds << timeoutInSeconds;
    note("AXUIElementSetMessagingTimeout " + (object == nullptr ? std::string() : object->name) + " " + seconds.str());
    return kAXErrorSuccess;
}

} // extern "C"
