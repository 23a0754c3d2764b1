#pragma once

// Which room a source file belongs to and which rooms it may include: arrows point down only, and never in a circle.
//
// Pure functions over a tree whose root is the folder src. Each gives its findings as one line of text each; none means
// that the tree is in order.

#include "rooms/SourceTree.h"

#include <optional>

namespace orvesa {

/// Lowest first. The adapters of a desktop stand beside the order: they see the ports and nothing else. So do the
/// tools, which are programs of their own: they see nothing of the others, and none of the others sees them. What a
/// session of Linux is, its adapters and the tools must agree on: both see that, and it sees nothing.
enum class Room {
    ports,
    ground,
    models,
    ai,
    core,
    ui,
    app,
    composition,
    linuxAdapters,
    macosAdapters,
    tools,
    linuxSession
};

[[nodiscard]] QString roomName(Room room);
/// The room of a file by its path below src; none for a path outside every room.
[[nodiscard]] std::optional<Room> roomOf(const QString &path);
/// Whether a file of the room `from` may include a file of the room `to`.
[[nodiscard]] bool mayInclude(Room from, Room to);

/// Arrows that point up, includes of files that do not exist, files in no room.
[[nodiscard]] QStringList wrongArrows(const SourceTree &tree);
/// Circles between files, and circles between rooms.
[[nodiscard]] QStringList circles(const SourceTree &tree);

} // namespace orvesa
