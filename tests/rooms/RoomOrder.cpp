#include "rooms/RoomOrder.h"

#include <QRegularExpression>

#include <set>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// Arrows from each node to the nodes it needs.
using Graph = std::map<QString, std::set<QString>>;

bool isGround(const QString &file)
{
    static const QRegularExpression pattern(
        u"^(AppLanguage|L10nKey|RawValue|LocalizedError|Localization.*|Keychain.*)\\.(h|cpp|mm)$"_s);
    return pattern.match(file).hasMatch();
}

/// Whether an include names a file of this project rather than one of a library or one that moc writes.
bool isOurs(const QString &include)
{
    static const QRegularExpression pattern(u"^(Models|AI|Core|UI|App|Platform|Tools)/"_s);
    return pattern.match(include).hasMatch() && !include.endsWith(".moc"_L1);
}

void visit(const Graph &graph, const QString &node, QStringList &way, std::set<QString> &done, QStringList &found)
{
    if (const auto begin = way.indexOf(node); begin >= 0) {
        found.append(u"circle: "_s + (way.mid(begin) << node).join(" -> "_L1));
        return;
    }
    if (done.contains(node)) {
        return;
    }
    way.append(node);
    if (const auto arrows = graph.find(node); arrows != graph.end()) {
        for (const QString &next : arrows->second) {
            visit(graph, next, way, done, found);
        }
    }
    way.removeLast();
    done.insert(node);
}

QStringList circlesOf(const Graph &graph)
{
    QStringList found;
    std::set<QString> done;
    for (const auto &[node, arrows] : graph) {
        QStringList way;
        visit(graph, node, way, done, found);
    }
    return found;
}

} // namespace

QString roomName(Room room)
{
    switch (room) {
    case Room::ports:
        return u"ports"_s;
    case Room::ground:
        return u"ground"_s;
    case Room::models:
        return u"models"_s;
    case Room::ai:
        return u"ai"_s;
    case Room::core:
        return u"core"_s;
    case Room::ui:
        return u"ui"_s;
    case Room::app:
        return u"app"_s;
    case Room::composition:
        return u"composition"_s;
    case Room::linuxAdapters:
        return u"linux"_s;
    case Room::macosAdapters:
        return u"macos"_s;
    case Room::tools:
        return u"tools"_s;
    case Room::linuxSession:
        return u"session"_s;
    }
    return {};
}

std::optional<Room> roomOf(const QString &path)
{
    const QString folder = path.section(u'/', 0, 0);
    const QString rest = path.section(u'/', 1);
    if (folder == "Platform"_L1) {
        if (rest.startsWith("linux/"_L1)) {
            return rest.startsWith("linux/WaylandSession."_L1) ? Room::linuxSession : Room::linuxAdapters;
        }
        if (rest.startsWith("macos/"_L1)) {
            return Room::macosAdapters;
        }
        return rest.contains(u'/') ? std::nullopt : std::optional(Room::ports);
    }
    if (folder == "Core"_L1) {
        return isGround(rest) ? Room::ground : Room::core;
    }
    if (folder == "App"_L1) {
        return rest.startsWith("Composition"_L1) ? Room::composition : Room::app;
    }
    static const std::map<QString, Room> whole{
        {u"Models"_s, Room::models}, {u"AI"_s, Room::ai}, {u"UI"_s, Room::ui}, {u"Tools"_s, Room::tools}};
    const auto found = whole.find(folder);
    return found == whole.end() ? std::nullopt : std::optional(found->second);
}

bool mayInclude(Room from, Room to)
{
    if (from == to) {
        return true;
    }
    if (to == Room::linuxSession) {
        return from == Room::linuxAdapters || from == Room::composition || from == Room::tools;
    }
    if (from == Room::linuxSession || from == Room::tools || to == Room::tools) {
        return false;
    }
    if (from == Room::linuxAdapters || from == Room::macosAdapters) {
        return to == Room::ports;
    }
    if (to == Room::linuxAdapters || to == Room::macosAdapters) {
        return from == Room::composition;
    }
    // The composition is one file of the topmost room, and its header hides the desktop: the entry may include it.
    if (from == Room::app && to == Room::composition) {
        return true;
    }
    return from > to;
}

QStringList wrongArrows(const SourceTree &tree)
{
    QStringList found;
    for (const QString &path : tree.paths()) {
        if (!SourceTree::isHeader(path) && !SourceTree::isSource(path)) {
            continue;
        }
        const auto from = roomOf(path);
        if (!from) {
            found.append(path + u": is in no room"_s);
            continue;
        }
        for (const QString &include : tree.includes(path)) {
            if (include.startsWith(u'.')) {
                found.append(path + u": includes "_s + include + u" by a relative path"_s);
            }
            if (!isOurs(include)) {
                continue;
            }
            const auto to = roomOf(include);
            // A header that the build fills in stands in the tree as its template.
            const bool exists = tree.contains(include) || tree.contains(include + u".in"_s);
            if (!exists || !to) {
                found.append(path + u": includes "_s + include + u", which does not exist"_s);
            } else if (!mayInclude(*from, *to)) {
                found.append(path + u": includes "_s + include + u", an arrow from "_s + roomName(*from) + u" to "_s +
                             roomName(*to));
            }
        }
    }
    return found;
}

QStringList circles(const SourceTree &tree)
{
    Graph files;
    Graph rooms;
    for (const QString &path : tree.paths()) {
        const auto from = roomOf(path);
        for (const QString &include : tree.includes(path)) {
            const auto to = roomOf(include);
            if (!isOurs(include) || !from || !to) {
                continue;
            }
            files[path].insert(include);
            if (*from != *to && !(*from == Room::app && *to == Room::composition)) {
                rooms[roomName(*from)].insert(roomName(*to));
            }
        }
    }
    return circlesOf(files) + circlesOf(rooms);
}

} // namespace orvesa
