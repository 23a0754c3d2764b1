#include "macos/recorders/Pasteboard.h"

#include "macos/recorders/RecordedCalls.h"

#include <algorithm>

namespace orvesa::recorders {

class PasteboardItemObject final : public Object {
public:
    PasteboardItemObject() : Object(Kind::pasteboardItem) {}

    Pasteboard::Data data;
    bool isWritten = false;
};

namespace {

Pasteboard *currentPasteboard = nullptr;

Object generalPasteboard(Kind::pasteboard, Object::Life::forEver);
StringObject typeString(QStringLiteral("public.utf8-plain-text"), Object::Life::forEver);
StringObject becameActive(QStringLiteral("NSApplicationDidBecomeActiveNotification"), Object::Life::forEver);

QString text(const Object *object)
{
    const Object *const string = checked(object, Kind::string, "a type");
    return string == nullptr ? QString() : static_cast<const StringObject *>(string)->text;
}

const QByteArray *bytes(const PasteboardItemObject &item, const QString &type)
{
    const auto found = std::ranges::find(item.data, type, &std::pair<QString, QByteArray>::first);
    return found == item.data.end() ? nullptr : &found->second;
}

Object *general(const ClassObject *, const Selector *)
{
    return &generalPasteboard;
}

long changeCount(const Object *, const Selector *)
{
    return Pasteboard::current()->changeCount;
}

Object *pasteboardItems(const Object *, const Selector *)
{
    const auto &items = Pasteboard::current()->items();
    return autoreleased(new ArrayObject({items.begin(), items.end()}));
}

long clearContents(const Object *, const Selector *)
{
    note("clearContents");
    Pasteboard::current()->clear();
    return Pasteboard::current()->changeCount;
}

signed char writeObjects(const Object *, const Selector *, const ArrayObject *objects)
{
    note("writeObjects " + std::to_string(objects->entries.size()));
    for (Object *const entry : objects->entries) {
        auto *const item = static_cast<PasteboardItemObject *>(checked(entry, Kind::pasteboardItem, "writeObjects"));
        if (item == nullptr || item->isWritten) {
            noteMisuse("an item that belongs to a pasteboard already, which throws");
            return 0;
        }
        Pasteboard::current()->append(item);
    }
    return 1;
}

Object *stringForType(const Object *, const Selector *, const Object *type)
{
    for (const PasteboardItemObject *const item : Pasteboard::current()->items()) {
        if (const QByteArray *const found = bytes(*item, text(type))) {
            return autoreleased(new StringObject(QString::fromUtf8(*found)));
        }
    }
    return nullptr;
}

Object *newItem(const ClassObject *, const Selector *)
{
    return new PasteboardItemObject;
}

Object *initItem(Object *self, const Selector *)
{
    return self;
}

Object *itemTypes(const PasteboardItemObject *self, const Selector *)
{
    auto *const types = new ArrayObject({});
    for (const auto &[type, data] : self->data) {
        auto *const name = new StringObject(type);
        types->append(name);
        name->release();
    }
    return autoreleased(types);
}

Object *dataForType(const PasteboardItemObject *self, const Selector *, const Object *type)
{
    const QByteArray *const found = bytes(*self, text(type));
    return found == nullptr ? nullptr : autoreleased(new DataObject(*found));
}

signed char setDataForType(PasteboardItemObject *self, const Selector *, const Object *data, const Object *type)
{
    const Object *const object = checked(data, Kind::data, "setData:forType:");
    if (object != nullptr) {
        self->data.emplace_back(text(type), static_cast<const DataObject *>(object)->bytes);
    }
    return object == nullptr ? 0 : 1;
}

} // namespace

Pasteboard::Pasteboard()
{
    currentPasteboard = this;
}

Pasteboard::~Pasteboard()
{
    clear();
    currentPasteboard = nullptr;
}

Pasteboard *Pasteboard::current()
{
    return currentPasteboard;
}

void Pasteboard::clear()
{
    ++changeCount;
    for (PasteboardItemObject *const item : std::exchange(m_items, {})) {
        item->data.clear(); // an item of an earlier content gives nothing any more
        item->release();
    }
}

void Pasteboard::append(PasteboardItemObject *item)
{
    item->isWritten = true;
    item->retain();
    m_items.push_back(item);
}

void Pasteboard::copyFromOutside(const std::vector<Data> &items)
{
    clear();
    for (const Data &data : items) {
        auto *const item = new PasteboardItemObject;
        item->data = data;
        append(item);
        item->release();
    }
}

std::vector<Pasteboard::Data> Pasteboard::contents() const
{
    std::vector<Data> all;
    std::ranges::transform(m_items, std::back_inserter(all), [](const auto *item) { return item->data; });
    return all;
}

MethodTable appKitMethods()
{
    return {{{"+NSPasteboard", "generalPasteboard"}, method(&general)},
            {{"NSPasteboard", "changeCount"}, method(&changeCount)},
            {{"NSPasteboard", "pasteboardItems"}, method(&pasteboardItems)},
            {{"NSPasteboard", "clearContents"}, method(&clearContents)},
            {{"NSPasteboard", "writeObjects:"}, method(&writeObjects)},
            {{"NSPasteboard", "stringForType:"}, method(&stringForType)},
            {{"+NSPasteboardItem", "alloc"}, method(&newItem)},
            {{"NSPasteboardItem", "init"}, method(&initItem)},
            {{"NSPasteboardItem", "types"}, method(&itemTypes)},
            {{"NSPasteboardItem", "dataForType:"}, method(&dataForType)},
            {{"NSPasteboardItem", "setData:forType:"}, method(&setDataForType)}};
}

} // namespace orvesa::recorders

using namespace orvesa::recorders;

extern "C" {

// The system's constants.
Object *NSPasteboardTypeString = &typeString;
Object *NSApplicationDidBecomeActiveNotification = &becameActive;

ClassObject _OBJC_CLASS_NSPasteboard("NSPasteboard");
ClassObject _OBJC_CLASS_NSPasteboardItem("NSPasteboardItem");
int __objc_class_name_NSPasteboard = 0;
int __objc_class_name_NSPasteboardItem = 0;

} // extern "C"
