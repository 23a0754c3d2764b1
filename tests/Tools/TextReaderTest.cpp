// From picture to text with the real engines, in the program that runs them.

#include "Tools/CharacterErrors.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <numeric>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

const QString samples = QStringLiteral(ORVESA_SAMPLES);
const QString program = QStringLiteral(ORVESA_RECOGNIZE);

QString textOfFile(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

Outcome run(const QStringList &arguments, const QByteArray &input = {}, const QString &dataFolder = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!dataFolder.isEmpty()) {
        environment.insert(u"TESSDATA_PREFIX"_s, dataFolder);
    }
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60'000));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QByteArray request(const QByteArray &image)
{
    return "IMAGE " + QByteArray::number(image.size()) + '\n' + image;
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

TEST(CharacterErrors, CountEdits)
{
    EXPECT_EQ(characterErrors(u"abc"_s, u"abc"_s), 0);
    EXPECT_EQ(characterErrors(u"abc"_s, u"axc"_s), 1);
    EXPECT_EQ(characterErrors(u"a  b\n\nc"_s, u" a b\nc "_s), 0);
    EXPECT_EQ(characterErrors(u"abc"_s, QString()), 3);
    EXPECT_EQ(characterErrors(u"ab"_s, u"something long"_s), 2);
}

/// The texts that the program's answers carry; a failure is an empty one.
QStringList answers(QByteArray output)
{
    QStringList texts;
    while (!output.isEmpty()) {
        const qsizetype end = output.indexOf('\n');
        const QByteArray header = output.first(std::max<qsizetype>(end, 0));
        const qsizetype count = header.startsWith("TEXT ") ? header.sliced(5).toLongLong() : 0;
        texts.append(QString::fromUtf8(output.mid(end + 1, count)));
        output.remove(0, end < 0 ? output.size() : end + 1 + count);
    }
    return texts;
}

// A light and a dark page, two columns, dialogs, no antialiasing; three languages and two at once; text that runs down.
TEST(TextReader, ReadsEveryCharacterOfCleanSamples)
{
    const QStringList names{u"en01"_s, u"en02"_s, u"en21"_s, u"en22"_s, u"ja02"_s, u"ja05"_s, u"ja15"_s,
                            u"ja17"_s, u"zh02"_s, u"zh11"_s, u"zh17"_s, u"mx01"_s, u"vt01"_s};
    QByteArray requests;
    for (const QString &name : names) {
        requests += request(fileBytes(samples + u'/' + name + u".png"_s));
    }
    const Outcome outcome = run({u"--serve"_s}, requests);
    EXPECT_EQ(outcome.exitCode, 0);
    const QStringList texts = answers(outcome.output);
    ASSERT_EQ(texts.size(), names.size());
    for (qsizetype index = 0; index < names.size(); ++index) {
        EXPECT_EQ(comparable(texts[index]), comparable(textOfFile(samples + u'/' + names[index] + u".txt"_s)))
            << names[index].toStdString();
    }
}
TEST(TextReader, FindsNothingOnABlankPage)
{
    const QTemporaryDir folder;
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::darkGray);
    const QString path = folder.filePath(u"blank.png"_s);
    ASSERT_TRUE(image.save(path));
    const Outcome outcome = run({path});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output.trimmed(), "");
}

TEST(RecognitionServer, AnswersOneImageAfterTheOther)
{
    const Outcome outcome = run({u"--serve"_s}, request(fileBytes(samples + u"/zh07.png"_s)) + request("no image") +
                                                    request(fileBytes(samples + u"/ja07.png"_s)));
    EXPECT_EQ(outcome.exitCode, 0);
    const QByteArray first = "立即更新";
    const QByteArray last = "注文を確定する";
    EXPECT_EQ(outcome.output, "TEXT " + QByteArray::number(first.size()) + '\n' + first +
                                  "FAILED the file is no image that can be read\nTEXT " +
                                  QByteArray::number(last.size()) + '\n' + last);
}

TEST(RecognitionServer, TakesNoDrawings)
{
    const QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"90\" height=\"30\">"
                               "<text x=\"5\" y=\"20\">word</text></svg>";
    const Outcome outcome = run({u"--serve"_s}, request(drawing));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "FAILED the file is no image that can be read\n");
}

TEST(RecognitionServer, EndsAtRubbish)
{
    EXPECT_EQ(run({u"--serve"_s}, "GIVE ME TEXT\n").exitCode, 1);
    EXPECT_EQ(run({u"--serve"_s}, "IMAGE 99999999999999\n").exitCode, 1);
    EXPECT_EQ(run({u"--serve"_s}, "IMAGE 100\ntoo few").exitCode, 1);
    EXPECT_EQ(run({u"--serve"_s}, QByteArray(1'000'000, 'x')).exitCode, 1);
    EXPECT_EQ(run({u"--serve"_s}).exitCode, 0);
}

TEST(RecognitionServer, SaysWhichPackagesAreMissing)
{
    const QTemporaryDir empty;
    const Outcome outcome = run({samples + u"/en01.png"_s}, {}, empty.path());
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "");
    for (const char *package : {"tesseract-ocr-eng", "tesseract-ocr-jpn", "tesseract-ocr-chi-tra"}) {
        EXPECT_TRUE(outcome.errors.contains(package)) << outcome.errors.toStdString();
    }
}

TEST(RecognitionServer, ReadsWithTheLanguagesThatAreThere)
{
    const QTemporaryDir folder;
    const QString installed = u"/usr/share/tesseract-ocr/5/tessdata/eng.traineddata"_s;
    ASSERT_TRUE(QFile::link(installed, folder.filePath(u"eng.traineddata"_s)));
    const Outcome outcome = run({samples + u"/en02.png"_s}, {}, folder.path());
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(comparable(QString::fromUtf8(outcome.output)), comparable(textOfFile(samples + u"/en02.txt"_s)));
    EXPECT_TRUE(outcome.errors.contains("tesseract-ocr-jpn")) << outcome.errors.toStdString();
}

/// The picture in bold, with more room here than there between the characters of its columns: text that is not laid
/// across.
QByteArray withUnevenSteps(const QImage &picture)
{
    constexpr int firstCharacter = 11;
    constexpr int step = 18;
    constexpr std::array more{0, 0, 3, 0, 1, 2, 0, 0, 2, 6};
    QImage result(picture.width(), picture.height() + std::accumulate(more.begin(), more.end(), 0),
                  QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Darken);
    int to = firstCharacter;
    for (std::size_t index = 0; index < more.size(); ++index) {
        to += more.at(index);
        const QRect strip(0, firstCharacter + step * static_cast<int>(index), picture.width(), step);
        for (const int x : {-1, 0, 1}) {
            for (const int y : {-1, 0, 1}) {
                painter.drawImage(QPoint(x, to + y), picture, strip);
            }
        }
        to += step;
    }
    painter.end();
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && result.save(&buffer, "PNG"));
    return buffer.data();
}

TEST(RecognitionServer, SaysOnceWhatTextThatRunsDownLacks)
{
    const QTemporaryDir folder;
    for (const QString &name : {u"eng.traineddata"_s, u"jpn.traineddata"_s, u"chi_tra.traineddata"_s}) {
        ASSERT_TRUE(QFile::link(u"/usr/share/tesseract-ocr/5/tessdata/"_s + name, folder.filePath(name)));
    }
    const QByteArray across = request(fileBytes(samples + u"/zh07.png"_s));
    EXPECT_EQ(run({u"--serve"_s}, across, folder.path()).errors, "");
    const QByteArray down = request(withUnevenSteps(QImage(samples + u"/vt02.png"_s)));
    const Outcome outcome = run({u"--serve"_s}, across + down + down, folder.path());
    EXPECT_EQ(answers(outcome.output).size(), 3);
    for (const char *package : {"tesseract-ocr-jpn-vert", "tesseract-ocr-chi-tra-vert"}) {
        EXPECT_EQ(outcome.errors.count(package), 1) << outcome.errors.toStdString();
    }
}

TEST(RecognizeProgram, RefusesWrongUsage)
{
    EXPECT_EQ(run({}).exitCode, 2);
    EXPECT_EQ(run({u"--unknown"_s}).exitCode, 2);
    EXPECT_EQ(run({u"/nowhere.png"_s}).exitCode, 1);
}

} // namespace orvesa
