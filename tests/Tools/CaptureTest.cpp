// Pixels of the X server, densities, and the file that is written.

#include "Tools/Capture/ImageOutput.h"
#include "Tools/Capture/Monitors.h"
#include "Tools/Capture/PixelFormat.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>

#include <sys/stat.h>

namespace orvesa {

using namespace Qt::StringLiterals;

TEST(PixelFormat, ReadsTheUsualLayout)
{
    const std::array<std::uint8_t, 8> bytes{0x10, 0x20, 0x30, 0x00, 0xff, 0x00, 0x80, 0x77};
    const auto image = imageFrom(PixelFormat(), bytes.data(), bytes.size(), {2, 1});
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(0, 0), qRgb(0x30, 0x20, 0x10));
    EXPECT_EQ(image->pixel(1, 0), qRgb(0x80, 0x00, 0xff));
}

TEST(PixelFormat, ReadsSixteenBitsWithPaddedLines)
{
    const PixelFormat format{.bitsPerPixel = 16, .redMask = 0xf800, .greenMask = 0x07e0, .blueMask = 0x001f};
    const std::array<std::uint8_t, 8> bytes{0x00, 0xf8, 0, 0, 0xff, 0xff, 0, 0};
    const auto image = imageFrom(format, bytes.data(), bytes.size(), {1, 2});
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(0, 0), qRgb(255, 0, 0));
    EXPECT_EQ(image->pixel(0, 1), qRgb(255, 255, 255));
}

TEST(PixelFormat, ReadsTenBitsAChannelAndTheOtherByteOrder)
{
    const PixelFormat format{
        .leastByteFirst = false, .redMask = 0x3ff00000, .greenMask = 0x000ffc00, .blueMask = 0x000003ff};
    const std::array<std::uint8_t, 4> bytes{0x3f, 0xf0, 0x02, 0x00};
    const auto image = imageFrom(format, bytes.data(), bytes.size(), {1, 1});
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(0, 0), qRgb(255, 0, 128));
}

TEST(PixelFormat, RefusesTooFewBytes)
{
    const std::array<std::uint8_t, 7> bytes{};
    EXPECT_FALSE(imageFrom(PixelFormat(), bytes.data(), bytes.size(), {2, 1}));
}

TEST(Monitors, ReadTheDensity)
{
    EXPECT_DOUBLE_EQ(scaleInResources("*color: red\nXft.dpi:\t192\nXft.hinting: 1\n"), 2);
    EXPECT_DOUBLE_EQ(scaleInResources("Xft.dpi: 144"), 1.5);
    EXPECT_DOUBLE_EQ(scaleInResources(""), 1);
    EXPECT_DOUBLE_EQ(scaleInResources("Xft.dpi: many"), 1);
    EXPECT_DOUBLE_EQ(scaleInResources("Xft.dpi: 48"), 1);
}

TEST(ImageOutput, IsPrivateWholeAndSaysItsScale)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"capture.png"_s);
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 20, 30));
    EXPECT_EQ(writeCapture(path, image, 2), QString());
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const QImage read(path);
    EXPECT_EQ(read.size(), QSize(30, 20));
    EXPECT_EQ(read.pixel(0, 0), qRgb(10, 20, 30));
    EXPECT_EQ(read.dotsPerMeterX(), 7559); // 192 dots an inch
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"capture.png"_s});
}

TEST(ImageOutput, DoesNotWriteThroughALink)
{
    const QTemporaryDir folder;
    const QString target = folder.filePath(u"precious"_s);
    QFile precious(target);
    ASSERT_TRUE(precious.open(QIODevice::WriteOnly));
    precious.close();
    const QString path = folder.filePath(u"capture.png"_s);
    ASSERT_TRUE(QFile::link(target, path));
    EXPECT_EQ(writePrivately(path, "bytes"), QString());
    EXPECT_EQ(QFileInfo(target).size(), 0);
    EXPECT_FALSE(QFileInfo(path).isSymLink());
}

TEST(ImageOutput, SaysWhyItCannotBeWritten)
{
    EXPECT_TRUE(writePrivately(u"/nowhere/at/all.png"_s, "bytes").contains(u"No such file"_s));
}

} // namespace orvesa
