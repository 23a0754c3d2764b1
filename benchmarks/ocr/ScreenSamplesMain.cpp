// orvesa-screen-samples FOLDER: takes pictures of text in real applications on a private desktop, with what they say
// beside them. The ones in benchmarks/ocr/screens were taken so.

#include "desktop/apps/ReadingMatter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;
using namespace orvesa::desktop;

namespace {

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool take(const QDir &folder, const QStringList &wanted)
{
    QJsonArray cases;
    for (const Scene &scene : scenes()) {
        cases.append(QJsonObject{{u"id"_s, scene.id},
                                 {u"lang"_s, scene.language},
                                 {u"kind"_s, scene.kind},
                                 {u"dark"_s, scene.background.lightness() < scene.ink.lightness() ? 1 : 0}});
        if (!wanted.isEmpty() && !wanted.contains(scene.id)) {
            continue;
        }
        // A desktop of its own: what one application leaves does not reach the next.
        Desktop desktop;
        ReadingMatter matter(desktop);
        const QRect area = matter.show(scene);
        if (!desktop.windows().picture(area).save(folder.filePath(scene.id + u".png"_s)) ||
            !write(folder.filePath(scene.id + u".txt"_s), scene.lines.join(u'\n').toUtf8() + '\n')) {
            return false;
        }
    }
    return write(folder.filePath(u"cases.json"_s), QJsonDocument(cases).toJson());
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QDir folder(arguments.value(1));
    if (arguments.size() < 2 || !folder.mkpath(u"."_s)) {
        std::fprintf(stderr, "usage: orvesa-screen-samples FOLDER [SCENE...]\n");
        return 2;
    }
    try {
        return take(folder, arguments.mid(2)) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "orvesa-screen-samples: %s\n", error.what());
        return 1;
    }
}
