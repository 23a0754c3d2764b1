// orvesa-render-samples TEXTS FOLDER VARIANTS [SEED]: draws each text of a list in several looks, with what they say
// beside them. The looks follow a fixed order, or are any that the seed gives.

#include "ocr/SampleRenderer.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace orvesa::benchmark;

namespace {

using LookOf = std::function<SampleLook(const SampleText &text, int variant)>;

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

SampleText sampleText(const QJsonObject &object)
{
    SampleText text{object[u"lang"_s].toString(), object[u"kind"_s].toString(), {}};
    for (const QJsonValue &line : object[u"text"_s].toArray()) {
        text.lines.append(line.toString());
    }
    return text;
}

bool render(const QJsonArray &texts, const QDir &folder, int variants, const LookOf &lookOf)
{
    QJsonArray cases;
    int number = 0;
    for (const QJsonValue &value : texts) {
        const SampleText text = sampleText(value.toObject());
        for (int round = 0; round < variants; ++round) {
            const int variant = number + round * 7;
            const RenderedSample sample = renderSample(text, lookOf(text, variant), variant);
            const QString id = u"r%1%2"_s.arg(number, 2, 10, QChar(u'0')).arg(QChar(u'a' + round));
            if (!sample.image.save(folder.filePath(id + u".png"_s)) ||
                !write(folder.filePath(id + u".txt"_s), sample.reference.toUtf8() + '\n')) {
                return false;
            }
            cases.append(QJsonObject{{u"id"_s, id},
                                     {u"lang"_s, text.language},
                                     {u"kind"_s, text.kind},
                                     {u"font"_s, sample.font},
                                     {u"px"_s, sample.pixels},
                                     {u"scale"_s, sample.scale},
                                     {u"dark"_s, sample.dark ? 1 : 0}});
        }
        ++number;
    }
    return write(folder.filePath(u"cases.json"_s), QJsonDocument(cases).toJson());
}

} // namespace

int main(int argc, char *argv[])
{
    ::qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    QFile texts(arguments.value(1));
    const QDir folder(arguments.value(2));
    const int variants = arguments.value(3).toInt();
    const bool hasSeed = arguments.size() == 5;
    const quint32 seed = arguments.value(4).toUInt();
    const LookOf lookOf = [hasSeed, seed](const SampleText &text, int variant) {
        return hasSeed ? randomLook(text, 1'000 * seed + static_cast<quint32>(variant)) : orderedLook(text, variant);
    };
    if (arguments.size() < 4 || arguments.size() > 5 || variants < 1 || !texts.open(QIODevice::ReadOnly) ||
        !folder.mkpath(u"."_s)) {
        std::fprintf(stderr, "usage: orvesa-render-samples TEXTS FOLDER VARIANTS [SEED]\n");
        return 2;
    }
    return render(QJsonDocument::fromJson(texts.readAll()).array(), folder, variants, lookOf) ? 0 : 1;
}
