#pragma once

// Counted objects behind Core Foundation's references, in a register that knows which of them live.
//
// Any thread. An object is made with one reference, which belongs to whoever made it; constants of the system live for
// ever and are not counted. Every use goes through checked(), which notes a misuse instead of crashing.

#include <CoreFoundation/CoreFoundation.h>

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace orvesa::recorders {

enum class Kind : CFTypeID {
    string = 7,
    data,
    boolean,
    number,
    array,
    dictionary,
    error,
    element,
    eventSource,
    event,
    messagePort,
    runLoopSource,
    objectiveCClass,
    pasteboard,
    pasteboardItem,
    userDefaults,
    notificationCenter,
    observer,
};

class Object {
public:
    enum class Life { counted, forEver };

    explicit Object(Kind kind, Life life = Life::counted);
    virtual ~Object();
    Object(const Object &) = delete;
    Object &operator=(const Object &) = delete;

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The object's name in the record of calls.
    [[nodiscard]] virtual std::string description() const { return "object"; }

    void retain();
    void release();

private:
    Kind m_kind;
    Life m_life;
    std::atomic<int> m_references = 1;
};

/// How many counted objects live.
[[nodiscard]] int liveObjects();

/// The object behind a reference, if it lives and is of the kind.
[[nodiscard]] Object *checked(const void *reference, const char *use);
[[nodiscard]] Object *checked(const void *reference, Kind kind, const char *use);

class StringObject final : public Object {
public:
    explicit StringObject(QString contents, Life life = Life::counted)
        : Object(Kind::string, life), text(std::move(contents))
    {
    }
    [[nodiscard]] std::string description() const override { return text.toStdString(); }

    const QString text;
};

class DataObject final : public Object {
public:
    explicit DataObject(QByteArray contents) : Object(Kind::data), bytes(std::move(contents)) {}
    [[nodiscard]] std::string description() const override
    {
        return QByteArray(bytes).prepend('<').append('>').toStdString();
    }

    const QByteArray bytes;
};

class BooleanObject final : public Object {
public:
    explicit BooleanObject(bool which) : Object(Kind::boolean, Life::forEver), value(which) {}
    [[nodiscard]] std::string description() const override { return value ? "true" : "false"; }

    const bool value;
};

class NumberObject final : public Object {
public:
    explicit NumberObject(std::variant<std::int64_t, double> number) : Object(Kind::number), value(number) {}

    const std::variant<std::int64_t, double> value;
};

/// Retains what is in it.
class ArrayObject final : public Object {
public:
    explicit ArrayObject(std::vector<Object *> entries);
    ~ArrayObject() override;
    void append(Object *entry);

    std::vector<Object *> entries;
};

/// Retains what is in it, if it was made with the system's callbacks.
class DictionaryObject final : public Object {
public:
    enum class Retaining { keysAndValues, nothing };

    DictionaryObject(std::vector<std::pair<Object *, Object *>> entries, Retaining retaining);
    ~DictionaryObject() override;
    [[nodiscard]] std::string description() const override;
    /// The value under the key's text, or none.
    [[nodiscard]] Object *value(const char *key) const;

    const std::vector<std::pair<Object *, Object *>> entries;

private:
    Retaining m_retaining;
};

/// A reference for an interface's caller.
template <typename Reference>
[[nodiscard]] Reference referenceTo(const Object *object)
{
    return reinterpret_cast<Reference>(const_cast<Object *>(object));
}

} // namespace orvesa::recorders
