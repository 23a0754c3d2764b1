// The installed programs at work, from where they are installed.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QTemporaryDir>

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
        u"/usr/share/doc/orvesa-translate/CHANGELOG.md"_s,
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

TEST(InstalledPrograms, FilesNameTheProgramByItsPathWhateverThePrefix)
{
    const QString identifier = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
    const auto command = [&](const Installation &installation, const QString &prefix, const QString &file,
                             const QString &group,
                             const QString &key) { return valueOf(installation.content(prefix + file), group, key); };
    const QString entry = u"/share/applications/"_s + identifier + u".desktop"_s;
    const QString service = u"/share/dbus-1/services/"_s + identifier + u".service"_s;
    const QString unit = u"/lib/systemd/user/orvesa-translate.service"_s;
    // Menus find what shells find; elsewhere its folder is in nobody's search path.
    struct Case {
        QString prefix;
        QString program;
        QString menu;
    };
    for (const Case &expected :
         {Case{u"/usr"_s, u"/usr/bin/orvesa-translate"_s, u"orvesa-translate"_s},
          Case{u"/usr/local"_s, u"/usr/local/bin/orvesa-translate"_s, u"orvesa-translate"_s},
          Case{u"/opt/orvesa"_s, u"/opt/orvesa/bin/orvesa-translate"_s, u"/opt/orvesa/bin/orvesa-translate"_s},
          Case{u"/opt/two words"_s, u"\"/opt/two words/bin/orvesa-translate\""_s,
               u"\"/opt/two words/bin/orvesa-translate\""_s}}) {
        const Installation installation(expected.prefix);
        EXPECT_EQ(command(installation, expected.prefix, service, u"D-BUS Service"_s, u"Exec"_s), expected.program);
        EXPECT_EQ(command(installation, expected.prefix, unit, u"Service"_s, u"ExecStart"_s), expected.program);
        EXPECT_EQ(command(installation, expected.prefix, entry, u"Desktop Entry"_s, u"Exec"_s), expected.menu);
        EXPECT_EQ(command(installation, expected.prefix, entry, u"Desktop Action settings"_s, u"Exec"_s),
                  expected.menu + u" --perform settings"_s);
        const ToolResult verdict = run(u"desktop-file-validate"_s, {installation.file(expected.prefix + entry)});
        EXPECT_EQ(verdict.output, "") << verdict.output.constData();
    }
}

TEST(InstalledPrograms, AFolderBelowTheCurrentOneIsNamedWhole)
{
    const QTemporaryDir folder;
    const ToolResult installed =
        run(u"bash"_s, {u"-c"_s, u"cd \"$1\" && \"$2\" --install \"$3\" --prefix below"_s, u"bash"_s, folder.path(),
                        QStringLiteral(ORVESA_CMAKE), QStringLiteral(ORVESA_BUILD_FOLDER)});
    ASSERT_EQ(installed.exitCode, 0) << installed.output.constData();
    QFile service(
        folder.filePath(u"below/share/dbus-1/services/"_s + QStringLiteral(ORVESA_BUNDLE_IDENTIFIER) + u".service"_s));
    ASSERT_TRUE(service.open(QIODevice::ReadOnly));
    EXPECT_EQ(valueOf(service.readAll(), u"D-BUS Service"_s, u"Exec"_s),
              folder.filePath(u"below/bin/orvesa-translate"_s));
}

TEST(InstalledPrograms, WriteNothingButWhatTheyAreAskedToKeep)
{
    const Installation installation;
    const QProcessEnvironment environment = installation.environment();
    const QString program = installation.file(u"/usr/bin/orvesa-translate"_s);
    const auto written = [&environment] {
        const QDir home(environment.value(u"HOME"_s));
        QStringList files;
        QDirIterator iterator(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            files.append(home.relativeFilePath(iterator.next()));
        }
        files.sort();
        return files;
    };
    for (const QString &asking : {u"--version"_s, u"--help"_s}) {
        EXPECT_EQ(run(program, {asking}, environment).exitCode, 0);
    }
    EXPECT_EQ(written(), QStringList());
    const QString preferences = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER) + u".conf"_s;
    EXPECT_EQ(run(program, {u"settings"_s, u"set"_s, u"settings.appLanguage"_s, u"en"_s}, environment).exitCode, 0);
    EXPECT_EQ(run(program, {u"autostart"_s, u"on"_s}, environment).exitCode, 0);
    EXPECT_EQ(run(program, {u"translate"_s, u"text"_s}, environment).exitCode, 1) << "there is no key store";
    (void)run(program, {u"doctor"_s}, environment);
    EXPECT_EQ(written(),
              (QStringList{u".config/."_s + preferences + u".lock"_s,
                           u".config/autostart/"_s + QStringLiteral(ORVESA_BUNDLE_IDENTIFIER) + u".desktop"_s,
                           u".config/"_s + preferences}))
        << written().join(u' ').toStdString();
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
    file.seek(0);
    EXPECT_EQ(valueOf(file.readAll(), u"Desktop Entry"_s, u"TryExec"_s), program) << "no error when it is removed";
    // Found by its name: named by its name, so that it stays right when the installation moves.
    environment.insert(u"PATH"_s, installation.file(u"/usr/bin"_s) + u':' + environment.value(u"PATH"_s));
    EXPECT_EQ(autostart(u"on"_s).exitCode, 0);
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray entryByName = file.readAll();
    EXPECT_EQ(valueOf(entryByName, u"Desktop Entry"_s, u"Exec"_s), u"orvesa-translate"_s);
    EXPECT_EQ(valueOf(entryByName, u"Desktop Entry"_s, u"TryExec"_s), u"orvesa-translate"_s);
    EXPECT_EQ(autostart(u"off"_s).exitCode, 0);
    EXPECT_EQ(autostart(u"status"_s).output, "off\n");
    EXPECT_FALSE(file.exists());
}

} // namespace
} // namespace orvesa::packaging
