#pragma once

// Ownership of what XCB allocates.

#include <cstdlib>
#include <memory>

namespace orvesa {

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Type>
using Reply = std::unique_ptr<Type, FreeReply>;

} // namespace orvesa
