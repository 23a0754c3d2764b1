// What the installed programs are protected with, read from the files themselves.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

const QStringList programs{u"/usr/bin/orvesa-translate"_s, u"/usr/bin/orvesa-recognize"_s,
                           u"/usr/bin/orvesa-screencapture"_s};
const QString module = u"/usr/lib/orvesa-translate/modules/orvesa-translate.so"_s;

QByteArray readelf(const Installation &installation, const QString &option, const QString &path)
{
    const ToolResult result = run(u"readelf"_s, {u"-W"_s, option, installation.file(path)});
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    return result.output;
}

TEST(Hardening, ProgramsArePositionIndependent)
{
    const Installation installation;
    for (const QString &path : programs) {
        EXPECT_TRUE(readelf(installation, u"--file-header"_s, path).contains("DYN (")) << path.toStdString();
        EXPECT_TRUE(QString::fromUtf8(readelf(installation, u"--dynamic"_s, path))
                        .contains(QRegularExpression(u"Flags:.* PIE"_s)))
            << path.toStdString();
    }
}

TEST(Hardening, RelocationsAreReadOnlyAndDoneAtTheStart)
{
    const Installation installation;
    for (const QString &path : programs + QStringList{module}) {
        EXPECT_TRUE(readelf(installation, u"--program-headers"_s, path).contains("GNU_RELRO")) << path.toStdString();
        EXPECT_TRUE(readelf(installation, u"--dynamic"_s, path).contains("BIND_NOW")) << path.toStdString();
    }
}

TEST(Hardening, NothingIsWritableAndExecutable)
{
    const Installation installation;
    for (const QString &path : programs + QStringList{module}) {
        const QString headers = QString::fromUtf8(readelf(installation, u"--program-headers"_s, path));
        EXPECT_TRUE(headers.contains(QRegularExpression(u"GNU_STACK .* RW +0x"_s))) << headers.toStdString();
        EXPECT_FALSE(headers.contains(QRegularExpression(u"LOAD .* RWE +0x"_s))) << headers.toStdString();
        EXPECT_FALSE(readelf(installation, u"--dynamic"_s, path).contains("TEXTREL")) << path.toStdString();
    }
}

TEST(Hardening, TheStackIsGuarded)
{
    const Installation installation;
    for (const QString &path : programs + QStringList{module}) {
        EXPECT_TRUE(readelf(installation, u"--dyn-syms"_s, path).contains("__stack_chk_fail")) << path.toStdString();
    }
}

TEST(Hardening, LibraryCallsAreFortified)
{
    if (QStringLiteral(ORVESA_BUILD_TYPE) != "Release"_L1) {
        // The library wants an optimised build for it, and only that one is installed.
        SUCCEED();
        return;
    }
    const Installation installation;
    // The executable itself makes no call that could be.
    for (const QString &path : {programs.at(1), programs.at(2), module}) {
        EXPECT_TRUE(QString::fromUtf8(readelf(installation, u"--dyn-syms"_s, path))
                        .contains(QRegularExpression(u"__[a-z]+_chk@"_s)))
            << path.toStdString();
    }
    QFile file(QStringLiteral(ORVESA_BUILD_FOLDER) + u"/compile_commands.json"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int count = 0;
    const QJsonArray commands = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue &command : commands) {
        const QString source = command[u"file"_s].toString();
        if (source.startsWith(QStringLiteral(ORVESA_SOURCE_FOLDER) + u"/src/"_s)) {
            EXPECT_TRUE(command[u"command"_s].toString().contains("-D_FORTIFY_SOURCE="_L1)) << source.toStdString();
            ++count;
        }
    }
    EXPECT_GT(count, 100);
}

TEST(Hardening, BranchesLandWhereTheyMay)
{
    const Installation installation;
#if defined(__x86_64__)
    const QByteArray landing = QByteArray::fromHex("f30f1efa"); // endbr64, at the beginning of functions
#elif defined(__aarch64__)
    const QByteArray landing = QByteArray::fromHex("3f2303d5"); // paciasp
#else
    const QByteArray landing;
#endif
    for (const QString &path : programs + QStringList{module}) {
        // The C library's own start-up code has a few, whatever the program is built with.
        EXPECT_GT(installation.content(path).count(landing), 50) << path.toStdString();
    }
}

TEST(Hardening, LibrariesComeFromTheSystemAndFromTheProgramsOwnFolderOnly)
{
    const Installation installation;
    for (const QString &path : programs + QStringList{module}) {
        const QString dynamic = QString::fromUtf8(readelf(installation, u"--dynamic"_s, path));
        const QRegularExpressionMatch match =
            QRegularExpression(u"\\((?:RPATH|RUNPATH)\\)[^\\[]*\\[([^\\]]*)\\]"_s).match(dynamic);
        EXPECT_EQ(match.captured(1),
                  path == programs.first() ? u"$ORIGIN/../lib/orvesa-translate/modules"_s : QString())
            << path.toStdString();
    }
}

} // namespace
} // namespace orvesa::packaging
