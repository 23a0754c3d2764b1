// The adapters around the two tools, with a probe in the tools' place that behaves well or badly.

#include "Platform/linux/ImageFile.h"
#include "Platform/linux/ToolScreenCapture.h"
#include "Platform/linux/ToolTextRecognition.h"

#include "fakes/Awaited.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <memory>

#include <signal.h>
#include <sys/stat.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString probe = QStringLiteral(ORVESA_TOOL_PROBE);

class ToolAdapters : public ::testing::Test {
protected:
    ToolAdapters()
    {
        image = folder.filePath(u"image.png"_s);
        QImage picture(40, 20, QImage::Format_RGB32);
        picture.fill(Qt::white);
        EXPECT_TRUE(picture.save(image));
    }
    ~ToolAdapters() override { qunsetenv("ORVESA_PROBE"); }

    std::optional<QStringList> recognize(std::stop_token stop = {})
    {
        return awaited(recognition.recognize(image, stop));
    }

    QTemporaryDir folder;
    QString image;
    ToolTextRecognition recognition{probe, {.keep = 100ms, .least = 2s, .forMillionPixels = 1s}};
};

/// Runs the event loop until a process has ended and been collected.
bool endsWithin(qint64 process, std::chrono::milliseconds bound)
{
    QElapsedTimer timer;
    timer.start();
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (::kill(static_cast<pid_t>(process), 0) != 0 || timer.hasExpired(bound.count())) {
            loop.quit();
        }
    });
    look.start(5ms);
    loop.exec();
    return ::kill(static_cast<pid_t>(process), 0) != 0;
}

} // namespace

TEST_F(ToolAdapters, ReadLinesInAWarmProcess)
{
    EXPECT_EQ(recognize(), (QStringList{u"1"_s, u"1"_s})); // the first answer; one thread of the library's own
    EXPECT_EQ(recognize(), (QStringList{u"2"_s, u"1"_s}));
}

TEST_F(ToolAdapters, StartTheRecognitionAheadAndEndItWhenIdle)
{
    EXPECT_EQ(recognition.workerProcess(), 0);
    recognition.prepare();
    const qint64 process = recognition.workerProcess();
    EXPECT_GT(process, 0);
    EXPECT_EQ(recognize(), (QStringList{u"1"_s, u"1"_s}));
    EXPECT_EQ(recognition.workerProcess(), process);
    EXPECT_TRUE(endsWithin(process, 5s));
    EXPECT_EQ(recognize(), (QStringList{u"1"_s, u"1"_s})); // by another one
}

TEST_F(ToolAdapters, EndTheRecognitionWithTheProgram)
{
    auto own = std::make_unique<ToolTextRecognition>(probe);
    own->prepare();
    const qint64 process = own->workerProcess();
    own.reset();
    EXPECT_NE(::kill(static_cast<pid_t>(process), 0), 0);
}

TEST_F(ToolAdapters, SurviveEveryBadManner)
{
    for (const char *manner : {"crash", "rubbish", "flood", "endless", "failed"}) {
        qputenv("ORVESA_PROBE", manner);
        EXPECT_EQ(recognize(), std::nullopt) << manner;
        qunsetenv("ORVESA_PROBE");
        // One that said that it failed still runs; the others were ended.
        const bool runsOn = qstrcmp(manner, "failed") == 0;
        if (!runsOn) {
            EXPECT_EQ(recognize(), (QStringList{u"1"_s, u"1"_s})) << manner;
            EXPECT_TRUE(endsWithin(recognition.workerProcess(), 5s)) << manner;
        }
    }
}

TEST_F(ToolAdapters, WaitForAnAnswerInPieces)
{
    qputenv("ORVESA_PROBE", "slow");
    EXPECT_EQ(recognize(), QStringList{u"slow"_s});
}

TEST_F(ToolAdapters, DoNotWaitForEver)
{
    ToolTextRecognition impatient(probe, {.keep = 10s, .least = 150ms, .forMillionPixels = 1ms});
    qputenv("ORVESA_PROBE", "hang");
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(awaited(impatient.recognize(image, {})), std::nullopt);
    EXPECT_LT(timer.elapsed(), 5'000);
    EXPECT_GE(timer.elapsed(), 100);
    qunsetenv("ORVESA_PROBE");
    EXPECT_EQ(awaited(impatient.recognize(image, {})), (QStringList{u"1"_s, u"1"_s}));
}

TEST_F(ToolAdapters, EndTheRecognitionOnAStopRequest)
{
    qputenv("ORVESA_PROBE", "hang");
    std::stop_source source;
    QTimer later;
    QObject::connect(&later, &QTimer::timeout, &later, [&] { source.request_stop(); });
    later.start(50ms);
    QElapsedTimer timer;
    timer.start();
    recognition.prepare();
    const qint64 process = recognition.workerProcess();
    EXPECT_EQ(recognize(source.get_token()), std::nullopt);
    EXPECT_LT(timer.elapsed(), 1'500);
    EXPECT_TRUE(endsWithin(process, 5s));
}

TEST_F(ToolAdapters, FailWithoutTheTool)
{
    ToolTextRecognition missing(u"/nowhere/orvesa-recognize"_s);
    missing.prepare();
    EXPECT_EQ(awaited(missing.recognize(image, {})), std::nullopt);
    QElapsedTimer timer;
    timer.start();
    ToolScreenCapture capture(u"/nowhere/orvesa-screencapture"_s);
    EXPECT_FALSE(awaited(capture.captureInteractively(folder.filePath(u"x.png"_s), {})));
    EXPECT_LT(timer.elapsed(), 5'000);
}

TEST_F(ToolAdapters, GiveTheCaptureItsArgumentsInOrder)
{
    ToolScreenCapture capture(probe);
    const QString path = folder.filePath(u"with blanks.png"_s);
    for (const char *manner : {"", "fail"}) { // its exit status says nothing
        qputenv("ORVESA_PROBE", manner);
        EXPECT_TRUE(awaited(capture.captureInteractively(path, {})));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), "-i\n-x\n" + path.toUtf8() + '\n');
        file.remove();
    }
}

TEST_F(ToolAdapters, EndTheCaptureOnAStopRequest)
{
    qputenv("ORVESA_PROBE", "hang");
    ToolScreenCapture capture(probe);
    std::stop_source source;
    QTimer later;
    QObject::connect(&later, &QTimer::timeout, &later, [&] { source.request_stop(); });
    later.start(50ms);
    EXPECT_TRUE(awaited(capture.captureInteractively(folder.filePath(u"x.png"_s), source.get_token())));
}

TEST_F(ToolAdapters, AreNotHeldUpByWhatIsNoImage)
{
    const QString fifo = folder.filePath(u"fifo"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_TRUE(readImageFile(fifo).failure.contains(u"regular"_s));
    EXPECT_TRUE(readImageFile(folder.path()).failure.contains(u"regular"_s));
    EXPECT_TRUE(readImageFile(u"/dev/zero"_s).failure.contains(u"regular"_s));
    EXPECT_TRUE(readImageFile(u"/nowhere"_s).failure.contains(u"opened"_s));
    EXPECT_TRUE(readImageFile(u"/etc/hostname"_s).failure.contains(u"no image"_s));
    EXPECT_EQ(readImageFile(image).size, QSize(40, 20));
    for (const QByteArrayView drawing : {QByteArrayView("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\"/>"),
                                         QByteArrayView("\x1f\x8b\x08 and so on, which may become any size")}) {
        const QString path = folder.filePath(u"drawing"_s);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(drawing.data(), drawing.size()), drawing.size());
        file.close();
        EXPECT_TRUE(readImageFile(path).failure.contains(u"drawing"_s)) << drawing.data();
    }
    const QString huge = folder.filePath(u"huge"_s);
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64(65) * 1024 * 1024)); // sparse
    EXPECT_TRUE(readImageFile(huge).failure.contains(u"too large"_s));
}

} // namespace orvesa
