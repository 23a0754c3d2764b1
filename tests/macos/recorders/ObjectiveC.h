#pragma once

// The stand-in for the Objective-C runtime, as clang's "objfw" code calls it: messages go to functions in a table, by
// the class of the receiver, and counting goes to the recorders' objects. Main thread.

#include "macos/recorders/Object.h"

#include <map>
#include <string>
#include <utility>

namespace orvesa::recorders {

struct Selector {
    const char *name;
    const char *types;
};

/// A method's function takes the receiver, the selector and the parameters.
using MethodFunction = void (*)();
/// By class and selector; "+" before a class stands for the class itself.
using MethodTable = std::map<std::pair<std::string, std::string>, MethodFunction>;

template <typename Function>
[[nodiscard]] MethodFunction method(Function *function)
{
    return reinterpret_cast<MethodFunction>(function);
}

class ClassObject final : public Object {
public:
    explicit ClassObject(const char *shownName) : Object(Kind::objectiveCClass, Life::forEver), name(shownName) {}
    [[nodiscard]] std::string description() const override { return name; }

    const std::string name;
};

[[nodiscard]] MethodTable foundationMethods();
[[nodiscard]] MethodTable appKitMethods();

/// Takes the reference over until the pool is drained.
Object *autoreleased(Object *object);
void drainPool();

/// A block that outlives the call that it was given to.
class KeptBlock final {
public:
    explicit KeptBlock(const void *block);
    ~KeptBlock();
    KeptBlock(const KeptBlock &) = delete;
    KeptBlock &operator=(const KeptBlock &) = delete;

    /// Calls it with one object.
    void call(Object *parameter) const;

private:
    void *m_block;
};

/// What fast enumeration asks with.
struct Enumeration {
    unsigned long state;
    Object **items;
    unsigned long *mutations;
    unsigned long extra[5];
};

} // namespace orvesa::recorders
