// The Debian package.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

class Package : public ::testing::Test {
protected:
    void SetUp() override
    {
        const ToolResult made =
            run(QStringLiteral(ORVESA_CPACK),
                {u"--config"_s, QStringLiteral(ORVESA_BUILD_FOLDER) + u"/CPackConfig.cmake"_s, u"-B"_s, folder.path()});
        ASSERT_EQ(made.exitCode, 0) << made.output.constData();
        const QStringList packages = QDir(folder.path()).entryList({u"*.deb"_s});
        ASSERT_EQ(packages.size(), 1);
        path = folder.filePath(packages.first());
    }

    [[nodiscard]] QString field(const QString &name) const
    {
        return QString::fromUtf8(run(u"dpkg-deb"_s, {u"--field"_s, path, name}).output).trimmed();
    }

    QTemporaryDir folder;
    QString path;
};

TEST_F(Package, PassesLintianWithoutAWord)
{
    // Even what it only suspects counts. The compiler's name, which CPack's strip leaves in, harms nobody; and which
    // programs make calls that can be fortified is for the tests of their hardening to say.
    const ToolResult verdict =
        run(u"lintian"_s, {u"--allow-root"_s, u"--pedantic"_s, u"--display-info"_s, u"--suppress-tags"_s,
                           u"binary-has-unneeded-section,hardening-no-fortify-functions"_s, u"--fail-on"_s,
                           u"error,warning,info,pedantic"_s, path});
    EXPECT_EQ(verdict.exitCode, 0) << verdict.output.constData();
    EXPECT_TRUE(verdict.output.isEmpty()) << verdict.output.constData();
}

TEST_F(Package, NamesWhatTheProgramNeeds)
{
    EXPECT_EQ(field(u"Version"_s), QStringLiteral(ORVESA_VERSION));
    const QString depends = field(u"Depends"_s);
    // Linked, and so found by themselves; and loaded by name.
    for (const QString &name : {u"libqt6widgets6"_s, u"libtesseract5"_s, u"libxcb-xtest0"_s, u"qt6-qpa-plugins"_s,
                                u"libssl3"_s, u"libsecret-1-0"_s}) {
        EXPECT_TRUE(depends.contains(name)) << depends.toStdString();
    }
    const QString recommends = field(u"Recommends"_s);
    for (const QString &name : {u"at-spi2-core"_s, u"gnome-keyring | "_s, u"tesseract-ocr-jpn-vert"_s, u"fonts-"_s}) {
        EXPECT_TRUE(recommends.contains(name)) << recommends.toStdString();
    }
}

TEST_F(Package, IsTheSameWheneverItIsMade)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"SOURCE_DATE_EPOCH"_s, u"1700000000"_s);
    const auto digest = [&environment](const QTemporaryDir &target) {
        const ToolResult made =
            run(QStringLiteral(ORVESA_CPACK),
                {u"--config"_s, QStringLiteral(ORVESA_BUILD_FOLDER) + u"/CPackConfig.cmake"_s, u"-B"_s, target.path()},
                environment);
        EXPECT_EQ(made.exitCode, 0) << made.output.constData();
        QFile file(target.filePath(QDir(target.path()).entryList({u"*.deb"_s}).value(0)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
    };
    const QTemporaryDir first;
    const QTemporaryDir second;
    const QByteArray digestOfTheFirst = digest(first);
    EXPECT_EQ(digestOfTheFirst, digest(second));
    QFile made(path);
    ASSERT_TRUE(made.open(QIODevice::ReadOnly));
    EXPECT_NE(digestOfTheFirst, QCryptographicHash::hash(made.readAll(), QCryptographicHash::Sha256).toHex())
        << "without the variable the day counts";
}

TEST_F(Package, HoldsWhatAnInstallationHolds)
{
    const QTemporaryDir extracted;
    const ToolResult result = run(u"dpkg-deb"_s, {u"--extract"_s, path, extracted.path()});
    ASSERT_EQ(result.exitCode, 0) << result.output.constData();
    const Installation installation;
    const QStringList installed = installation.files();
    for (const QString &file : installed) {
        EXPECT_TRUE(QFile::exists(extracted.path() + file)) << file.toStdString();
    }
    // No scripts: nothing has to be done when it is installed, and nothing is left when it is removed.
    const ToolResult control = run(u"dpkg-deb"_s, {u"--info"_s, path});
    for (const char *const script : {"preinst", "postinst", "prerm", "postrm"}) {
        EXPECT_FALSE(control.output.contains(script)) << script;
    }
}

} // namespace
} // namespace orvesa::packaging
