// The installed programs at work, from where they are installed.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QFileInfo>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

TEST(InstalledPrograms, EveryFileIsThereAndBelongsToItsOwner)
{
    const Installation installation;
    const QString identifier = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
    QStringList expected{
        u"/usr/bin/orvesa-recognize"_s,
        u"/usr/bin/orvesa-screencapture"_s,
        u"/usr/bin/orvesa-translate"_s,
        u"/usr/lib/orvesa-translate/modules/orvesa-translate.so"_s,
        u"/usr/lib/systemd/user/orvesa-translate.service"_s,
        u"/usr/share/applications/"_s + identifier + u".desktop"_s,
        u"/usr/share/bash-completion/completions/orvesa-translate"_s,
        u"/usr/share/dbus-1/services/"_s + identifier + u".service"_s,
        u"/usr/share/doc/orvesa-translate/changelog.gz"_s,
        u"/usr/share/doc/orvesa-translate/copyright"_s,
        u"/usr/share/fish/vendor_completions.d/orvesa-translate.fish"_s,
        u"/usr/share/icons/hicolor/scalable/apps/"_s + identifier + u".svg"_s,
        u"/usr/share/icons/hicolor/symbolic/apps/"_s + identifier + u"-symbolic.svg"_s,
        u"/usr/share/man/man1/orvesa-recognize.1.gz"_s,
        u"/usr/share/man/man1/orvesa-screencapture.1.gz"_s,
        u"/usr/share/man/man1/orvesa-translate.1.gz"_s,
        u"/usr/share/metainfo/"_s + identifier + u".metainfo.xml"_s,
        u"/usr/share/zsh/vendor-completions/_orvesa-translate"_s,
    };
    expected.sort();
    EXPECT_EQ(installation.files(), expected) << installation.files().join(u'\n').toStdString();
    for (const QString &path : std::as_const(expected)) {
        const QFileInfo info(installation.file(path));
        EXPECT_FALSE(info.permissions().testAnyFlags(QFile::WriteGroup | QFile::WriteOther)) << path.toStdString();
        EXPECT_TRUE(info.permissions().testFlags(QFile::ReadGroup | QFile::ReadOther)) << path.toStdString();
        EXPECT_EQ(info.isExecutable(), path.startsWith("/usr/bin/"_L1)) << path.toStdString();
    }
}

TEST(InstalledPrograms, FindTheirPartsWhereverTheyAreInstalled)
{
    for (const QString &prefix : {u"/usr"_s, u"/opt/orvesa"_s}) {
        const Installation installation(prefix);
        const QString program = installation.file(prefix + u"/bin/orvesa-translate"_s);
        const ToolResult version = run(program, {u"--version"_s}, installation.environment());
        EXPECT_EQ(version.exitCode, 0) << version.output.constData();
        EXPECT_TRUE(version.output.startsWith("Orvesa Translate " ORVESA_VERSION)) << version.output.constData();
        // The rest of the program is in the library that the executable has to find.
        const ToolResult settings = run(program, {u"settings"_s, u"list"_s}, installation.environment());
        EXPECT_EQ(settings.exitCode, 0) << settings.output.constData();
        EXPECT_TRUE(settings.output.contains("settings.targetLanguage=")) << settings.output.constData();
        const ToolResult page = run(program, {u"doctor"_s}, installation.environment());
        EXPECT_TRUE(page.output.contains("Screen capture: there")) << page.output.constData();
        EXPECT_FALSE(page.output.contains("orvesa-recognize is missing")) << page.output.constData();
    }
}

TEST(InstalledPrograms, StartAtLoginIsAnEntryThatDesktopsRead)
{
    const Installation installation;
    const QString program = installation.file(u"/usr/bin/orvesa-translate"_s);
    QProcessEnvironment environment = installation.environment();
    const auto autostart = [&](const QString &word) { return run(program, {u"autostart"_s, word}, environment); };
    EXPECT_EQ(autostart(u"status"_s).output, "off\n");
    EXPECT_EQ(autostart(u"off"_s).exitCode, 0);
    EXPECT_EQ(autostart(u"on"_s).exitCode, 0);
    EXPECT_EQ(autostart(u"status"_s).output, "on\n");
    const QString entry = environment.value(u"HOME"_s) + u"/.config/autostart/"_s +
                          QStringLiteral(ORVESA_BUNDLE_IDENTIFIER) + u".desktop"_s;
    const ToolResult verdict = run(u"desktop-file-validate"_s, {entry});
    EXPECT_EQ(verdict.exitCode, 0);
    EXPECT_EQ(verdict.output, "") << verdict.output.constData();
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(valueOf(file.readAll(), u"Desktop Entry"_s, u"Exec"_s), u'"' + program + u'"');
    // Found by its name: named by its name, so that it stays right when the installation moves.
    environment.insert(u"PATH"_s, installation.file(u"/usr/bin"_s) + u':' + environment.value(u"PATH"_s));
    EXPECT_EQ(autostart(u"on"_s).exitCode, 0);
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(valueOf(file.readAll(), u"Desktop Entry"_s, u"Exec"_s), u"orvesa-translate"_s);
    EXPECT_EQ(autostart(u"off"_s).exitCode, 0);
    EXPECT_EQ(autostart(u"status"_s).output, "off\n");
    EXPECT_FALSE(file.exists());
}

} // namespace
} // namespace orvesa::packaging
