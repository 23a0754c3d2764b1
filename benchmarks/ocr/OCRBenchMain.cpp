// orvesa-bench-ocr: how well and how fast screen text is recognised, beside the engine alone, over four sets of
// pictures.

#include "ocr/RecognitionFigures.h"
#include "ocr/ScreenPath.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <exception>

using namespace Qt::StringLiterals;
using namespace orvesa::benchmark;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QCommandLineOption alone(u"product-only"_s,
                                   u"Leaves the engine's own runs out, which take most of the time."_s);
    const QCommandLineOption dump(u"errors"_s, u"Prints each picture that is not read exactly."_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures text recognition on pictures and on a private desktop."_s);
    parser.addHelpOption();
    const QCommandLineOption folder(u"folder"_s, u"Measures the pictures of this folder and nothing else."_s,
                                    u"FOLDER"_s);
    parser.addOptions({alone, dump, folder});
    parser.process(application);
    QTextStream output(stdout);
    QElapsedTimer timer;
    timer.start();
    try {
        RecognitionFigures figures({.withEngineAlone = !parser.isSet(alone), .printErrors = parser.isSet(dump)});
        if (parser.isSet(folder)) {
            figures.measureFolder(parser.value(folder), parser.value(folder));
            output << figures.takeReport();
            return 0;
        }
        figures.measureFolder(u"development"_s, QStringLiteral(ORVESA_OCR_FOLDER "/samples"));
        output << figures.takeReport() << Qt::flush;
        figures.measureRendered(QStringLiteral(ORVESA_OCR_FOLDER "/texts.json"));
        output << figures.takeReport() << Qt::flush;
        figures.measureFresh(QStringLiteral(ORVESA_OCR_FOLDER "/fresh-texts.json"));
        output << figures.takeReport() << Qt::flush;
        figures.measureFolder(u"screens of applications"_s, QStringLiteral(ORVESA_OCR_FOLDER "/screens"));
        output << figures.takeReport() << Qt::flush;
        output << screenPathReport() << timer.elapsed() / 1000 << " s\n";
        return figures.missedGoals() == 0 ? 0 : 1;
    } catch (const std::exception &error) {
        QTextStream(stderr) << "orvesa-bench-ocr: " << error.what() << '\n';
        return 1;
    }
}
