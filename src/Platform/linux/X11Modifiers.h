#pragma once

// Which of the server's eight modifier bits stand for which modifier key, read from the modifier map. Value type,
// any thread; ask() and read() on that of their connection.

#include <QtGlobal>

#include <optional>
#include <vector>

namespace orvesa {

class X11Connection;

struct X11Modifiers {
    quint16 alt = 0;   ///< the bit that the left Alt key sets; 0 when there is none
    quint16 super = 0; ///< the bit that the left Super key sets
    quint16 numLock = 0;
    quint16 scrollLock = 0;

    /// Asks the server; nothing when it does not answer in time, which is not to be taken for a keyboard without them.
    [[nodiscard]] static std::optional<X11Modifiers> ask(X11Connection &connection);
    /// The same for one use that cannot wait: none of them without an answer.
    [[nodiscard]] static X11Modifiers read(X11Connection &connection);
    /// The bits for a mask of Carbon modifiers; nothing when this keyboard lacks one of them.
    [[nodiscard]] std::optional<quint16> fromCarbon(quint32 carbonModifiers) const;
    /// Every combination of the lock modifiers (Caps Lock, Num Lock, Scroll Lock) that may be on while a shortcut with
    /// these modifiers is pressed; the first is none.
    [[nodiscard]] std::vector<quint16> lockCombinations(quint16 wanted) const;
    /// `wanted` with each of those combinations.
    [[nodiscard]] std::vector<quint16> masks(quint16 wanted) const;

    bool operator==(const X11Modifiers &) const = default;
};

} // namespace orvesa
