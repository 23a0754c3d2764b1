#pragma once

// Owner of what xcb allocates with malloc: replies, errors and events. Any thread.

#include <cstdlib>
#include <memory>

namespace orvesa {

struct X11ReplyDeleter {
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply>
using X11Reply = std::unique_ptr<Reply, X11ReplyDeleter>;

} // namespace orvesa
