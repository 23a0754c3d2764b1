// Another program on the private desktop that copies or pastes, by the toolkit's own means.
//
//   own BYTES TYPES [secret]   owns the clipboard with a picture of that size, the text "kept", an HTML text and
//   further
//                              types "application/x-orvesa-N"; prints "owns" and stays until its input ends
//   read                       prints "TYPE SIZE HASH" for every type that it sees on the clipboard, but
//                              for the time since when it is owned

#include <QClipboard>
#include <QCryptographicHash>
#include <QGuiApplication>
#include <QMimeData>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cstdio>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void own(qsizetype bytes, int types, bool isSecret)
{
    auto content = std::make_unique<QMimeData>();
    content->setText(u"kept"_s);
    content->setHtml(u"<b>kept</b>"_s);
    QByteArray picture("\x89PNG\r\n\x1a\n\0", 9);
    picture.reserve(bytes);
    for (quint32 value = 1; picture.size() < bytes; value = value * 1'664'525 + 1'013'904'223) {
        picture.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    picture.truncate(bytes);
    if (bytes > 0) {
        content->setData(u"image/png"_s, picture);
    }
    for (int type = 0; type < types; ++type) {
        content->setData(u"application/x-orvesa-%1"_s.arg(type), QByteArray::number(type) + QByteArray("\0\xff", 2));
    }
    if (isSecret) {
        content->setData(u"x-kde-passwordManagerHint"_s, "secret");
    }
    QGuiApplication::clipboard()->setMimeData(content.release());
    std::puts("owns");
    std::fflush(stdout);
}

void read()
{
    const QMimeData *const content = QGuiApplication::clipboard()->mimeData();
    for (const QString &type : content->formats()) {
        if (type == "TIMESTAMP"_L1) {
            continue; // since when it is owned
        }
        const QByteArray data = content->data(type);
        std::printf("%s %lld %s\n", qPrintable(type), static_cast<long long>(data.size()),
                    QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex().constData());
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "read"_L1) {
        read();
        return 0;
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [] {
        std::array<char, 16> ignored{};
        if (::read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0) {
            QCoreApplication::quit();
        }
    });
    own(arguments.value(2).toLongLong(), arguments.value(3).toInt(), arguments.value(4) == "secret"_L1);
    return QGuiApplication::exec();
}
