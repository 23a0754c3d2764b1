// What the command "recognize" says and ends with.

#include "App/RecognizeCommand.h"

#include "fakes/Awaited.h"
#include "fakes/InterfaceLanguage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using CommandLine::ExitCode;
using ::testing::HasSubstr;

class FakeRecognition final : public TextRecognitionPort {
public:
    void prepare() override {}
    QCoro::Task<std::optional<QStringList>> recognize(QString, std::stop_token) override
    {
        ++images;
        co_return lines;
    }

    std::optional<QStringList> lines;
    int images = 0;
};

class RecognizeCommandTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QString makeImage()
    {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::white);
        EXPECT_TRUE(image.save(path(u"image.png"_s)));
        return path(u"image.png"_s);
    }

    /// What the command ended with; what it printed is in `output` and `errors`.
    ExitCode run(const QString &image)
    {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        const RecognizeCommand command(recognition);
        const ExitCode code = awaited(command.run({image}));
        output = ::testing::internal::GetCapturedStdout();
        errors = ::testing::internal::GetCapturedStderr();
        return code;
    }

    InterfaceLanguage interfaceLanguage{AppLanguage::english};
    FakeRecognition recognition;
    std::string output;
    std::string errors;

private:
    QTemporaryDir m_folder;
};

TEST_F(RecognizeCommandTest, PrintsTheLines)
{
    recognition.lines = QStringList{u"one"_s, u"two"_s};
    EXPECT_EQ(run(makeImage()), ExitCode::success);
    EXPECT_EQ(output, "one\ntwo\n");
    EXPECT_EQ(errors, "");
}

TEST_F(RecognizeCommandTest, SaysThatAFileCannotBeRead)
{
    recognition.lines = QStringList{u"one"_s};
    const QByteArray pipe = QFile::encodeName(path(u"pipe"_s));
    ASSERT_EQ(::mkfifo(pipe.constData(), S_IRUSR | S_IWUSR), 0); // which nobody waits for
    for (const QString &name : {path(u"tpyo.png"_s), path(QString()), path(u"pipe"_s), QString()}) {
        EXPECT_EQ(run(name), ExitCode::failure);
        EXPECT_EQ(errors, "The image “" + name.toStdString() + "” could not be read.\n");
        EXPECT_EQ(output, "");
    }
    EXPECT_EQ(recognition.images, 0);
}

TEST_F(RecognizeCommandTest, SaysThatAFileIsNoImage)
{
    const QString name = path(u"text.png"_s);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no pixels");
    file.close();
    EXPECT_EQ(run(name), ExitCode::failure);
    EXPECT_EQ(errors, "The file “" + name.toStdString() + "” is no image that can be read.\n");
}

TEST_F(RecognizeCommandTest, SaysWhereToLearnWhyAnImageWasNotRecognized)
{
    EXPECT_EQ(run(makeImage()), ExitCode::failure);
    EXPECT_EQ(errors,
              "The image could not be recognized; \"orvesa-translate doctor\" says whether something is missing.\n");
    EXPECT_EQ(output, "");
}

TEST_F(RecognizeCommandTest, SaysThatThereIsNoText)
{
    for (const QStringList &lines : {QStringList{}, QStringList{u" "_s}}) {
        recognition.lines = lines;
        EXPECT_EQ(run(makeImage()), ExitCode::failure);
        EXPECT_THAT(errors, HasSubstr("No text"));
        EXPECT_EQ(output, "");
    }
}

} // namespace
} // namespace orvesa
