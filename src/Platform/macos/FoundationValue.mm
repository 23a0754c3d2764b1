#include "Platform/macos/FoundationValue.h"

#include <CoreFoundation/CoreFoundation.h>

namespace orvesa::FoundationValue {

namespace {

struct Objects {
    id operator()(bool value) const { return [NSNumber numberWithBool:value]; }
    id operator()(qint64 value) const { return [NSNumber numberWithLongLong:value]; }
    id operator()(double value) const { return [NSNumber numberWithDouble:value]; }
    id operator()(const QString &value) const { return value.toNSString(); }
    id operator()(const QByteArray &value) const { return value.toNSData(); }
};

DefaultsValue numberValue(NSNumber *number)
{
    const auto reference = (__bridge CFNumberRef)number;
    // A Boolean is a number too, but of a type of its own.
    if (CFGetTypeID(reference) == CFBooleanGetTypeID()) {
        return static_cast<bool>(number.boolValue);
    }
    if (CFNumberIsFloatType(reference) != 0) {
        return number.doubleValue;
    }
    return qint64{number.longLongValue};
}

} // namespace

id object(const DefaultsValue &value)
{
    return std::visit(Objects(), value);
}

std::optional<DefaultsValue> value(id object)
{
    if ([object isKindOfClass:[NSNumber class]]) {
        return numberValue(object);
    }
    if ([object isKindOfClass:[NSString class]]) {
        return QString::fromNSString(object);
    }
    if ([object isKindOfClass:[NSData class]]) {
        return QByteArray::fromNSData(object);
    }
    return std::nullopt;
}

} // namespace orvesa::FoundationValue
