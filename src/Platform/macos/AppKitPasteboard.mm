#include "Platform/macos/AppKitPasteboard.h"

#import <AppKit/AppKit.h>

namespace orvesa {

namespace {

/// The system's name for a type; plain text goes by one of its own here.
NSPasteboardType nativeType(const QString &type)
{
    return type == QLatin1StringView(pasteboardPlainText) ? NSPasteboardTypeString : type.toNSString();
}

NSPasteboardItem *nativeItem(const PasteboardItem &item)
{
    NSPasteboardItem *const result = [[NSPasteboardItem alloc] init];
    for (const auto &[type, data] : item) {
        [result setData:data.bytes.toNSData() forType:nativeType(type)];
    }
    return result;
}

} // namespace

qint64 AppKitPasteboard::changeCount()
{
    return NSPasteboard.generalPasteboard.changeCount;
}

QCoro::Task<std::optional<std::vector<QStringList>>> AppKitPasteboard::itemTypes()
{
    std::vector<QStringList> items;
    for (NSPasteboardItem *item in NSPasteboard.generalPasteboard.pasteboardItems) {
        QStringList types;
        for (NSPasteboardType type in item.types) {
            types.append(QString::fromNSString(type));
        }
        items.push_back(types);
    }
    co_return items;
}

QCoro::Task<PasteboardReading> AppKitPasteboard::data(std::size_t item, QString type)
{
    NSArray<NSPasteboardItem *> *const items = NSPasteboard.generalPasteboard.pasteboardItems;
    NSData *const bytes = item < items.count ? [items[item] dataForType:nativeType(type)] : nil;
    PasteboardReading reading;
    if (bytes != nil) {
        reading.outcome = PasteboardReading::Outcome::data;
        reading.data.bytes = QByteArray::fromNSData(bytes);
    }
    co_return reading;
}

QCoro::Task<std::optional<QString>> AppKitPasteboard::string()
{
    NSString *const text = [NSPasteboard.generalPasteboard stringForType:NSPasteboardTypeString];
    co_return text == nil ? std::nullopt : std::optional(QString::fromNSString(text));
}

void AppKitPasteboard::clear()
{
    [NSPasteboard.generalPasteboard clearContents];
}

bool AppKitPasteboard::write(const std::vector<PasteboardItem> &items)
{
    NSMutableArray<NSPasteboardItem *> *const objects = [NSMutableArray array];
    for (const PasteboardItem &item : items) {
        [objects addObject:nativeItem(item)];
    }
    return [NSPasteboard.generalPasteboard writeObjects:objects];
}

} // namespace orvesa
