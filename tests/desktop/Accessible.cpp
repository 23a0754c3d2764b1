#include "desktop/Accessible.h"

#include "desktop/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto textInterface = "org.a11y.atspi.Text";
constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto componentInterface = "org.a11y.atspi.Component";
constexpr quint32 screenCoordinates = 0;

QString named(const char *interface)
{
    return QString::fromLatin1(interface);
}

std::pair<QString, QString> readReference(const QDBusArgument &argument)
{
    QString bus;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> bus >> path;
    argument.endStructure();
    return {bus, path.path()};
}

bool isNobody(const QString &path)
{
    return path.isEmpty() || path == u"/org/a11y/atspi/null"_s;
}

/// The argument of a reply when it is there and has that signature.
std::optional<QDBusArgument> compound(const QDBusMessage &reply, const QString &signature)
{
    const QVariant first = reply.arguments().value(0);
    if (reply.type() != QDBusMessage::ReplyMessage || first.userType() != qMetaTypeId<QDBusArgument>())
        return std::nullopt;
    const auto argument = first.value<QDBusArgument>();
    return argument.currentSignature() == signature ? std::optional(argument) : std::nullopt;
}

} // namespace

Accessible::Accessible(const AccessibleTree *tree, QString bus, QString path)
    : m_tree(isNobody(path) ? nullptr : tree), m_bus(std::move(bus)), m_path(std::move(path))
{
}

QString Accessible::name() const
{
    return m_tree ? m_tree->property(m_bus, m_path, named(accessibleInterface), u"Name"_s).toString() : QString();
}

QString Accessible::description() const
{
    return m_tree ? m_tree->property(m_bus, m_path, named(accessibleInterface), u"Description"_s).toString()
                  : QString();
}

QString Accessible::role() const
{
    if (!m_tree)
        return {};
    return m_tree->call(m_bus, m_path, named(accessibleInterface), u"GetRoleName"_s).arguments().value(0).toString();
}

quint64 Accessible::states() const
{
    if (!m_tree)
        return 0;
    const auto argument = compound(m_tree->call(m_bus, m_path, named(accessibleInterface), u"GetState"_s), u"au"_s);
    if (!argument)
        return 0;
    QList<quint32> words;
    *argument >> words;
    return quint64{words.value(0)} | (quint64{words.value(1)} << 32U);
}

bool Accessible::has(AccessibleState state) const
{
    return ((states() >> static_cast<unsigned>(state)) & 1U) != 0;
}

QStringList Accessible::interfaces() const
{
    if (!m_tree)
        return {};
    return m_tree->call(m_bus, m_path, named(accessibleInterface), u"GetInterfaces"_s)
        .arguments()
        .value(0)
        .toStringList();
}

QString Accessible::text() const
{
    if (!m_tree || !interfaces().contains(named(textInterface)))
        return {};
    return m_tree->call(m_bus, m_path, named(textInterface), u"GetText"_s, {0, -1}).arguments().value(0).toString();
}

QString Accessible::readable() const
{
    const QString content = text();
    return content.isEmpty() ? name() : content;
}

QString Accessible::selectedText() const
{
    if (!m_tree)
        return {};
    const QVariantList range = m_tree->call(m_bus, m_path, named(textInterface), u"GetSelection"_s, {0}).arguments();
    if (range.size() != 2 || range[0].toInt() == range[1].toInt())
        return {};
    return m_tree->call(m_bus, m_path, named(textInterface), u"GetText"_s, range).arguments().value(0).toString();
}

QRect Accessible::extents() const
{
    if (!m_tree)
        return {};
    const auto argument = compound(
        m_tree->call(m_bus, m_path, named(componentInterface), u"GetExtents"_s, {screenCoordinates}), u"(iiii)"_s);
    if (!argument)
        return {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    argument->beginStructure();
    *argument >> x >> y >> width >> height;
    argument->endStructure();
    return {x, y, width, height};
}

QStringList Accessible::actions() const
{
    QStringList names;
    const int count = m_tree ? m_tree->property(m_bus, m_path, named(actionInterface), u"NActions"_s).toInt() : 0;
    for (int index = 0; index < count; ++index)
        names.append(
            m_tree->call(m_bus, m_path, named(actionInterface), u"GetName"_s, {index}).arguments().value(0).toString());
    return names;
}

bool Accessible::doAction(const QString &action) const
{
    const auto index = static_cast<int>(actions().indexOf(action));
    return index >= 0 &&
           m_tree->call(m_bus, m_path, named(actionInterface), u"DoAction"_s, {index}).arguments().value(0).toBool();
}

bool Accessible::doAction() const
{
    return m_tree &&
           m_tree->call(m_bus, m_path, named(actionInterface), u"DoAction"_s, {0}).arguments().value(0).toBool();
}

std::vector<Accessible> Accessible::children() const
{
    std::vector<Accessible> found;
    if (!m_tree)
        return found;
    const auto argument =
        compound(m_tree->call(m_bus, m_path, named(accessibleInterface), u"GetChildren"_s), u"a(so)"_s);
    if (!argument)
        return found;
    argument->beginArray();
    while (!argument->atEnd()) {
        auto [bus, path] = readReference(*argument);
        if (!isNobody(path))
            found.emplace_back(m_tree, bus, path);
    }
    argument->endArray();
    return found;
}

bool Accessible::visit(const std::function<bool(const Accessible &)> &visitor, std::size_t &limit) const
{
    for (const Accessible &child : children()) {
        if (limit == 0)
            return false;
        --limit;
        if (!visitor(child) || !child.visit(visitor, limit))
            return false;
    }
    return true;
}

std::vector<Accessible> Accessible::descendants(std::size_t limit) const
{
    std::vector<Accessible> found;
    visit(
        [&](const Accessible &accessible) {
            found.push_back(accessible);
            return true;
        },
        limit);
    return found;
}

Accessible Accessible::find(const std::function<bool(const Accessible &)> &condition) const
{
    Accessible found;
    std::size_t limit = 4'000;
    visit(
        [&](const Accessible &accessible) {
            if (condition(accessible))
                found = accessible;
            return found.isNull();
        },
        limit);
    return found;
}

Accessible Accessible::find(const QString &role, const QString &name) const
{
    return find([&](const Accessible &accessible) {
        return (role.isEmpty() || accessible.role() == role) && (name.isEmpty() || accessible.name() == name);
    });
}

QString Accessible::dump() const
{
    QString lines = u"%1 '%2'\n"_s.arg(role(), name());
    for (const Accessible &accessible : descendants(400))
        lines += u"  %1 '%2' %3\n"_s.arg(accessible.role(), accessible.name(), accessible.text());
    return lines;
}

} // namespace orvesa::desktop
