#pragma once

// What every key store promises, to be asked of the fake that other tests rely on and of the real ones.

#include "Platform/KeyStorePort.h"

namespace orvesa::tests {

enum class Secrets {
    bytes, ///< any
    text,  ///< some stores keep text only
};

/// Expects the whole contract of an empty store, and leaves it empty.
void expectKeyStoreContract(KeyStorePort &store, Secrets secrets);

/// Expects that closing ends what is under way at once, and refuses everything afterwards. The store must be kept from
/// answering: by an unanswered question to the user, for example.
void expectKeyStoreClosingContract(KeyStorePort &store);

} // namespace orvesa::tests
