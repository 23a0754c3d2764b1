// A program that is on the accessibility bus twice, as Qt programs are where the desktop's look comes from GTK: first
// by a toolkit that has no windows, then by Qt with a window and a text in it. Runs until it is ended.

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QLineEdit>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

struct Reference {
    QString busName;
    QDBusObjectPath path;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Reference &reference)
{
    argument.beginStructure();
    argument << reference.busName << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Reference &reference)
{
    argument.beginStructure();
    argument >> reference.busName >> reference.path;
    argument.endStructure();
    return argument;
}

/// The toolkit without windows.
class EmptyApplication final : public QDBusVirtualObject {
public:
    using QDBusVirtualObject::QDBusVirtualObject;

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() != "GetChildren"_L1)
            return false;
        return connection.send(message.createReply(QVariant::fromValue(QList<Reference>())));
    }
};

} // namespace

Q_DECLARE_METATYPE(Reference)

int main(int argc, char *argv[])
{
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
    const QDBusMessage address = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
    QDBusConnection bus = QDBusConnection::connectToBus(address.arguments().value(0).toString(), u"empty"_s);
    EmptyApplication empty;
    const QString root = u"/org/a11y/atspi/accessible/root"_s;
    bus.registerVirtualObject(root, &empty, QDBusConnection::SubPath);
    QDBusMessage embed =
        QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, root, u"org.a11y.atspi.Socket"_s, u"Embed"_s);
    embed.setArguments({QVariant::fromValue(Reference{bus.baseService(), QDBusObjectPath(root)})});
    if (bus.call(embed).type() != QDBusMessage::ReplyMessage)
        return EXIT_FAILURE;

    QApplication application(argc, argv);
    QLineEdit text(u"Two toolkits, one process"_s);
    text.selectAll();
    text.show();
    text.activateWindow();
    return QApplication::exec();
}
