#pragma once

// Values of the preferences as Foundation objects and back. Any thread. Objective-C++ only: what is returned is counted
// by the compiler.

#include "Platform/UserDefaultsPort.h"

#import <Foundation/Foundation.h>

namespace orvesa::FoundationValue {

[[nodiscard]] id object(const DefaultsValue &value);
/// Nothing for objects of other classes, dates and lists for example.
[[nodiscard]] std::optional<DefaultsValue> value(id object);

} // namespace orvesa::FoundationValue
