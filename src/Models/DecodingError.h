#pragma once

// A stored or received value does not have the shape that a record needs. Never shown to the user; whoever decodes
// decides what a failure means. Value type, any thread.

#include <stdexcept>

namespace orvesa {

class DecodingError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace orvesa
