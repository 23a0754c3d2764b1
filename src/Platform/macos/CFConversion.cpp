#include "Platform/macos/CFConversion.h"

#include <vector>

namespace orvesa::CFConversion {

CFOwner<CFStringRef> string(const QString &text)
{
    return CFOwner(CFStringCreateWithCharacters(kCFAllocatorDefault, reinterpret_cast<const UniChar *>(text.utf16()),
                                                static_cast<CFIndex>(text.size())));
}

QString text(CFStringRef string)
{
    const CFIndex length = CFStringGetLength(string);
    QString result(static_cast<qsizetype>(length), Qt::Uninitialized);
    CFStringGetCharacters(string, CFRangeMake(0, length), reinterpret_cast<UniChar *>(result.data()));
    return result;
}

CFOwner<CFDataRef> data(const QByteArray &bytes)
{
    return CFOwner(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8 *>(bytes.constData()),
                                static_cast<CFIndex>(bytes.size())));
}

QByteArray bytes(CFDataRef data)
{
    return QByteArray(reinterpret_cast<const char *>(CFDataGetBytePtr(data)),
                      static_cast<qsizetype>(CFDataGetLength(data)));
}

CFOwner<CFDictionaryRef> dictionary(std::initializer_list<std::pair<CFStringRef, CFTypeRef>> entries)
{
    std::vector<const void *> keys;
    std::vector<const void *> values;
    for (const auto &[key, value] : entries) {
        keys.push_back(key);
        values.push_back(value);
    }
    return CFOwner(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(),
                                      static_cast<CFIndex>(keys.size()), &kCFTypeDictionaryKeyCallBacks,
                                      &kCFTypeDictionaryValueCallBacks));
}

} // namespace orvesa::CFConversion
