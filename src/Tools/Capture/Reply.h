#pragma once

// Owner of what xcb allocates with malloc: replies, errors and events. Any thread.

#include <cstdlib>
#include <memory>

namespace orvesa {

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Type>
using Reply = std::unique_ptr<Type, FreeReply>;

} // namespace orvesa
