// The way of a screen capture: tool, file, recognition, and the file's end on every path.

#include "Core/OCRService.h"
#include "Models/AppError.h"

#include "fakes/Awaited.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// A tool that leaves at the path whatever the test says, and a recognition that reads what the test says.
class Screen final : public ScreenCapturePort, public TextRecognitionPort {
public:
    QCoro::Task<bool> captureInteractively(QString outputPath, std::stop_token) override
    {
        wasPrepared = prepared;
        path = outputPath;
        if (leave) {
            leave(outputPath);
        }
        co_return starts;
    }

    void prepare() override { prepared = true; }

    QCoro::Task<std::optional<QStringList>> recognize(QString imagePath, std::stop_token) override
    {
        recognized = imagePath;
        existed = QFile::exists(imagePath);
        if (whileReading) {
            whileReading();
        }
        co_return lines;
    }

    bool starts = true;
    std::function<void(const QString &)> leave;
    std::function<void()> whileReading;
    std::optional<QStringList> lines;
    QString path;
    QString recognized;
    bool prepared = false;
    bool wasPrepared = false;
    bool existed = false;
};

void leaveFile(const QString &path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("an image");
}

class OCRServiceTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        qputenv("TMPDIR", QFile::encodeName(folder.path()));
    }
    void TearDown() override
    {
        EXPECT_TRUE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).isEmpty());
        qunsetenv("TMPDIR");
    }

    std::optional<AppError> failure()
    {
        try {
            (void)awaited(service.captureAndRecognizeText(source.get_token()));
        } catch (const AppError &error) {
            return error;
        }
        return std::nullopt;
    }

    QTemporaryDir folder;
    Screen screen;
    OCRService service{screen, screen};
    std::stop_source source;
};

} // namespace

TEST_F(OCRServiceTest, JoinsTheLinesOfTheCapture)
{
    screen.leave = leaveFile;
    screen.lines = QStringList{u" two"_s, u"lines "_s};
    EXPECT_EQ(awaited(service.captureAndRecognizeText()), u" two\nlines "_s);
    EXPECT_EQ(screen.recognized, screen.path);
    EXPECT_TRUE(screen.existed);
}

TEST_F(OCRServiceTest, NamesTheFileByAFreshIdentifier)
{
    (void)awaited(service.captureAndRecognizeText());
    const QString first = screen.path;
    (void)awaited(service.captureAndRecognizeText());
    EXPECT_NE(screen.path, first);
    const QRegularExpression pattern(
        u"^%1/kestrovander-ocr-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.png$"_s.arg(
            QRegularExpression::escape(folder.path())));
    EXPECT_TRUE(pattern.match(first).hasMatch()) << first.toStdString();
}

TEST_F(OCRServiceTest, LoadsTheRecognitionWhileTheUserDrags)
{
    (void)awaited(service.captureAndRecognizeText());
    EXPECT_TRUE(screen.wasPrepared);
}

TEST_F(OCRServiceTest, IsCancelledWhenThereIsNoFile)
{
    EXPECT_EQ(awaited(service.captureAndRecognizeText()), std::nullopt);
    EXPECT_TRUE(screen.recognized.isEmpty());
}

TEST_F(OCRServiceTest, FailsWhenTheToolCannotBeStarted)
{
    screen.starts = false;
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrCaptureFailed));
}

TEST_F(OCRServiceTest, FailsWhenTheImageCannotBeRead)
{
    screen.leave = leaveFile;
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrCaptureFailed));
}

TEST_F(OCRServiceTest, FindsNoTextInBlanks)
{
    screen.leave = leaveFile;
    screen.lines = QStringList{};
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrNoTextFound));
    screen.lines = QStringList{u" "_s, u"\u3000"_s};
    EXPECT_EQ(failure(), AppError(AppError::Kind::ocrNoTextFound));
}

TEST_F(OCRServiceTest, RefusesALinkInTheFilesPlace)
{
    for (const QString &target : {u"/etc/hostname"_s, u"/nowhere"_s}) {
        screen.leave = [&](const QString &path) { ASSERT_TRUE(QFile::link(target, path)); };
        EXPECT_EQ(failure(), AppError(AppError::Kind::ocrCaptureFailed));
        EXPECT_TRUE(screen.recognized.isEmpty());
    }
}

TEST_F(OCRServiceTest, IsCancelledByAStopRequest)
{
    screen.leave = leaveFile;
    screen.lines = QStringList{u"late"_s};
    screen.whileReading = [this] { source.request_stop(); };
    EXPECT_EQ(awaited(service.captureAndRecognizeText(source.get_token())), std::nullopt);
}

TEST_F(OCRServiceTest, DoesNotReadAfterAStopRequest)
{
    screen.leave = [this](const QString &path) {
        leaveFile(path);
        source.request_stop();
    };
    EXPECT_EQ(awaited(service.captureAndRecognizeText(source.get_token())), std::nullopt);
    EXPECT_TRUE(screen.recognized.isEmpty());
}

TEST_F(OCRServiceTest, RemovesWhatAnEarlierRunLeft)
{
    const QString left = folder.filePath(u"kestrovander-ocr-0F8FAD5B-D9CB-469F-A165-70867728950E.png"_s);
    const QString dangling = folder.filePath(u"kestrovander-ocr-0F8FAD5B-D9CB-469F-A165-70867728950F.png"_s);
    const QString other = folder.filePath(u"kestrovander-ocr-notes.png"_s);
    leaveFile(left);
    leaveFile(other);
    ASSERT_TRUE(QFile::link(u"/nowhere"_s, dangling));
    OCRService::removeLeftovers();
    EXPECT_FALSE(QFileInfo::exists(left));
    EXPECT_FALSE(QFileInfo(dangling).isSymLink());
    EXPECT_TRUE(QFile::remove(other));
}

} // namespace orvesa
