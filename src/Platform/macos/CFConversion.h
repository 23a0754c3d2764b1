#pragma once

// Qt's values as Core Foundation objects and back. Any thread.

#include "Platform/macos/CFOwner.h"

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <utility>

namespace orvesa::CFConversion {

[[nodiscard]] CFOwner<CFStringRef> string(const QString &text);
[[nodiscard]] QString text(CFStringRef string);
[[nodiscard]] CFOwner<CFDataRef> data(const QByteArray &bytes);
[[nodiscard]] QByteArray bytes(CFDataRef data);

/// Keys and values are retained by the dictionary.
[[nodiscard]] CFOwner<CFDictionaryRef> dictionary(std::initializer_list<std::pair<CFStringRef, CFTypeRef>> entries);

} // namespace orvesa::CFConversion
