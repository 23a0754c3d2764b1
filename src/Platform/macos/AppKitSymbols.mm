#include "Platform/macos/AppKitSymbols.h"

#include "Platform/macos/CFOwner.h"

#import <AppKit/AppKit.h>

#include <QRectF>

#include <algorithm>

namespace orvesa::AppKitSymbols {

namespace {

/// A context that draws into the image's own pixels, which have to outlive it.
CFOwner<CGContextRef> contextOf(QImage &target)
{
    const CFOwner space(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    constexpr std::size_t bitsPerComponent = 8;
    constexpr auto layout = static_cast<std::uint32_t>(kCGImageAlphaPremultipliedFirst) |
                            static_cast<std::uint32_t>(kCGImageByteOrder32Little);
    return CFOwner(CGBitmapContextCreate(target.bits(), static_cast<std::size_t>(target.width()),
                                         static_cast<std::size_t>(target.height()), bitsPerComponent,
                                         static_cast<std::size_t>(target.bytesPerLine()), space.get(), layout));
}

NSRect centred(NSSize size, int pixels)
{
    const CGFloat scale = pixels / std::max({size.width, size.height, CGFloat{1}});
    const NSSize shown = NSMakeSize(size.width * scale, size.height * scale);
    return NSMakeRect((pixels - shown.width) / 2, (pixels - shown.height) / 2, shown.width, shown.height);
}

} // namespace

QImage image(const QString &name, int pixels)
{
    NSImage *const symbol = [NSImage imageWithSystemSymbolName:name.toNSString() accessibilityDescription:nil];
    if (symbol == nil) {
        return {};
    }
    QImage result(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    const CFOwner<CGContextRef> context = contextOf(result);
    if (!context) {
        return {};
    }
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context.get() flipped:NO];
    [symbol drawInRect:centred(symbol.size, pixels)];
    [NSGraphicsContext restoreGraphicsState];
    return result;
}

} // namespace orvesa::AppKitSymbols
