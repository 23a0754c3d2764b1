// What the desktop reads: entry, services, store page, icons, manual pages, completions.

#include "packaging/Installation.h"

#include "AI/AIProviderType.h"
#include "Models/HotKeyAction.h"
#include "Models/PolishMode.h"
#include "Models/TargetLanguage.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QTemporaryDir>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

const QString identifier = QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
const QString entryPath = u"/usr/share/applications/"_s + identifier + u".desktop"_s;

TEST(DesktopFiles, TheEntryIsValid)
{
    const Installation installation;
    const ToolResult result = run(u"desktop-file-validate"_s, {installation.file(entryPath)});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "") << result.output.constData();
}

TEST(DesktopFiles, TheEntrysActionsAreOnesThatTheUtilityTakes)
{
    const Installation installation;
    const QByteArray entry = installation.content(entryPath);
    QStringList expected;
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        expected.append(rawValue(action));
    }
    expected.append(u"settings"_s);
    EXPECT_EQ(valueOf(entry, u"Desktop Entry"_s, u"Actions"_s), expected.join(u';') + u';');
    // Started over the bus by its file's name; by its command elsewhere.
    EXPECT_EQ(valueOf(entry, u"Desktop Entry"_s, u"DBusActivatable"_s), u"true"_s);
    EXPECT_EQ(valueOf(entry, u"Desktop Entry"_s, u"Exec"_s), u"orvesa-translate"_s);
    for (const QString &action : expected) {
        const QString group = u"Desktop Action "_s + action;
        EXPECT_EQ(valueOf(entry, group, u"Exec"_s), u"orvesa-translate --perform "_s + action);
        for (const QString &key : {u"Name"_s, u"Name[ja]"_s, u"Name[zh_TW]"_s}) {
            EXPECT_FALSE(valueOf(entry, group, key).isEmpty()) << group.toStdString() << " " << key.toStdString();
        }
    }
}

TEST(DesktopFiles, TheServicesNameTheProgramWhereverItIsInstalled)
{
    for (const QString &prefix : {u"/usr"_s, u"/opt/orvesa"_s}) {
        const Installation installation(prefix);
        const QByteArray service =
            installation.content(prefix + u"/share/dbus-1/services/"_s + identifier + u".service"_s);
        EXPECT_EQ(valueOf(service, u"D-BUS Service"_s, u"Name"_s), identifier);
        EXPECT_EQ(valueOf(service, u"D-BUS Service"_s, u"Exec"_s), prefix + u"/bin/orvesa-translate"_s);
        const QByteArray unit = installation.content(prefix + u"/lib/systemd/user/orvesa-translate.service"_s);
        EXPECT_EQ(valueOf(unit, u"Service"_s, u"ExecStart"_s), prefix + u"/bin/orvesa-translate"_s);
        EXPECT_EQ(valueOf(unit, u"Service"_s, u"BusName"_s), identifier);
        EXPECT_TRUE(QFileInfo(installation.file(prefix + u"/bin/orvesa-translate"_s)).isExecutable());
    }
}

TEST(DesktopFiles, TheUnitIsValidAndSandboxed)
{
    const QString path = u"/usr/lib/systemd/user/orvesa-translate.service"_s;
    const Installation installation;
    // The verifier wants to see the program at the path that the unit names.
    QByteArray unit = installation.content(path);
    unit.replace("ExecStart=/usr/bin", "ExecStart=" + installation.file(u"/usr/bin"_s).toUtf8());
    QFile file(installation.file(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(unit);
    file.close();
    const ToolResult result = run(u"systemd-analyze"_s, {u"--user"_s, u"--man=no"_s, u"verify"_s, file.fileName()},
                                  installation.environment());
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    EXPECT_FALSE(result.output.contains("orvesa-translate.service")) << result.output.constData();
    EXPECT_EQ(valueOf(unit, u"Service"_s, u"NoNewPrivileges"_s), u"yes"_s);
    EXPECT_EQ(valueOf(unit, u"Service"_s, u"SystemCallFilter"_s), u"@system-service"_s);
    EXPECT_EQ(valueOf(unit, u"Service"_s, u"LimitCORE"_s), u"0"_s);
    // Where the session ends with its display, there is nothing to start again and nothing to complain of.
    EXPECT_EQ(valueOf(unit, u"Service"_s, u"Restart"_s), u"on-abnormal"_s);
    EXPECT_EQ(valueOf(unit, u"Service"_s, u"SuccessExitStatus"_s), u"1"_s);
}

void expectValidStorePage(const QString &file)
{
    const ToolResult result =
        run(u"appstreamcli"_s, {u"validate"_s, u"--no-net"_s, u"--pedantic"_s, u"--no-color"_s, file});
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    EXPECT_FALSE(result.output.contains("W:") || result.output.contains("E:") || result.output.contains("I:"))
        << result.output.constData();
}

TEST(DesktopFiles, TheStorePageIsValidAndNamesNoMadeUpAddress)
{
    const Installation installation;
    const QString path = u"/usr/share/metainfo/"_s + identifier + u".metainfo.xml"_s;
    expectValidStorePage(installation.file(path));
    const QByteArray page = installation.content(path);
    EXPECT_TRUE(page.contains("<release version=\"" ORVESA_VERSION "\"")) << "the version has one place";
    EXPECT_EQ(page.contains("http"), !QByteArray(ORVESA_WEBSITE).isEmpty()) << page.constData();
}

TEST(DesktopFiles, TheStorePageOfAPublishedPackageShowsTheTreesPictures)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(identifier + u".metainfo.xml"_s);
    const auto make = [&file](const QString &website) {
        return run(QStringLiteral(ORVESA_CMAKE),
                   {u"-DORVESA_METAINFO="_s + file, u"-DORVESA_WEBSITE="_s + website,
                    u"-DORVESA_NAME=Orvesa Translate"_s, u"-DORVESA_BUNDLE_IDENTIFIER="_s + identifier,
                    u"-DORVESA_MAINTAINER_ADDRESS=someone@pages.example"_s, u"-DORVESA_RELEASE_DATE=2026-01-02"_s,
                    u"-DPROJECT_VERSION=1.2.3"_s, u"-P"_s,
                    QStringLiteral(ORVESA_SOURCE_FOLDER) + u"/packaging/metainfo.cmake"_s});
    };
    for (const QString &wrong : {u"http://pages.example"_s, u"https://pages.example/"_s, u"pages.example"_s}) {
        EXPECT_NE(make(wrong).exitCode, 0) << wrong.toStdString();
    }
    const ToolResult made = make(u"https://pages.example/orvesa"_s);
    ASSERT_EQ(made.exitCode, 0) << made.output.constData();
    expectValidStorePage(file);
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(written.readAll());
    EXPECT_TRUE(page.contains(u"<url type=\"homepage\">https://pages.example/orvesa</url>"_s)) << page.toStdString();
    QRegularExpressionMatchIterator images =
        QRegularExpression(u">https://pages.example/orvesa/images/([^<]+)</image>"_s).globalMatch(page);
    int count = 0;
    while (images.hasNext()) {
        const QString name = images.next().captured(1);
        EXPECT_TRUE(QFileInfo::exists(QStringLiteral(ORVESA_SOURCE_FOLDER) + u"/docs/images/"_s + name))
            << name.toStdString();
        ++count;
    }
    EXPECT_GE(count, 6);
}

TEST(DesktopFiles, TheIconsAreDrawn)
{
    const Installation installation;
    const QString folder = u"/usr/share/icons/hicolor/"_s;
    const QString application = folder + u"scalable/apps/"_s + identifier + u".svg"_s;
    const QString symbolic = folder + u"symbolic/apps/"_s + identifier + u"-symbolic.svg"_s;
    for (const QString &path : {application, symbolic}) {
        QSvgRenderer renderer(installation.file(path));
        ASSERT_TRUE(renderer.isValid()) << path.toStdString();
        QImage image(64, 64, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "corners are clear";
        int drawn = 0;
        for (int x = 0; x < image.width(); ++x) {
            drawn += qAlpha(image.pixel(x, image.height() / 2)) > 0 ? 1 : 0;
        }
        EXPECT_GT(drawn, 10) << path.toStdString();
    }
    // Desktops recolour fills only.
    EXPECT_FALSE(installation.content(symbolic).contains("stroke="));
    EXPECT_EQ(valueOf(installation.content(entryPath), u"Desktop Entry"_s, u"Icon"_s), identifier);
}

TEST(DesktopFiles, TheManualHasNoWarnings)
{
    const Installation installation;
    QProcessEnvironment environment = installation.environment();
    environment.insert(u"MANWIDTH"_s, u"80"_s);
    for (const QString &page : {u"orvesa-translate"_s, u"orvesa-recognize"_s, u"orvesa-screencapture"_s}) {
        const QString path = u"/usr/share/man/man1/"_s + page + u".1.gz"_s;
        const ToolResult result = run(u"bash"_s,
                                      {u"-c"_s, u"man --warnings -E UTF-8 -l -Tutf8 -Z \"$1\" 2>&1 >/dev/null"_s,
                                       u"bash"_s, installation.file(path)},
                                      environment);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output, "") << result.output.constData();
    }
}

TEST(DesktopFiles, TheManualHasEveryCommandThatTheHelpTextHas)
{
    const Installation installation;
    const ToolResult help =
        run(installation.file(u"/usr/bin/orvesa-translate"_s), {u"--help"_s}, installation.environment());
    ASSERT_EQ(help.exitCode, 0) << help.output.constData();
    ToolResult page = run(u"gzip"_s, {u"--decompress"_s, u"--stdout"_s,
                                      installation.file(u"/usr/share/man/man1/orvesa-translate.1.gz"_s)});
    const QString manual = QString::fromUtf8(page.output).remove(u'\\');
    QStringList commands;
    QRegularExpressionMatchIterator lines =
        QRegularExpression(u"^  orvesa-translate (\\S+)|^      (--\\S+)"_s, QRegularExpression::MultilineOption)
            .globalMatch(QString::fromUtf8(help.output));
    while (lines.hasNext()) {
        const QRegularExpressionMatch line = lines.next();
        commands.append(line.captured(1) + line.captured(2));
    }
    EXPECT_GE(commands.size(), 15) << help.output.constData();
    for (const QString &command : std::as_const(commands)) {
        EXPECT_TRUE(manual.contains(command)) << command.toStdString();
    }
}

/// What bash offers for the last of the words.
QStringList completions(const Installation &installation, const QStringList &words)
{
    const QString script = u"source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                           u"compopt() { :; }; _orvesa_translate; printf '%s\\n' \"${COMPREPLY[@]}\""_s;
    QProcessEnvironment environment = installation.environment();
    environment.insert(u"PATH"_s, installation.file(u"/usr/bin"_s) + u':' + environment.value(u"PATH"_s));
    const ToolResult result =
        run(u"bash"_s,
            QStringList{u"-uc"_s, script, u"bash"_s,
                        installation.file(u"/usr/share/bash-completion/completions/orvesa-translate"_s),
                        u"orvesa-translate"_s} +
                words,
            environment);
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    return QString::fromUtf8(result.output).split(u'\n', Qt::SkipEmptyParts);
}

template <typename Enumeration>
QStringList rawValues()
{
    QStringList values;
    for (const Enumeration value : allCases<Enumeration>()) {
        values.append(rawValue(value).replace(u' ', u"\\ "_s));
    }
    return values;
}

TEST(DesktopFiles, BashCompletesWhatTheProgramTakes)
{
    const Installation installation;
    EXPECT_EQ(completions(installation, {u"tr"_s}), QStringList{u"translate"_s});
    EXPECT_EQ(completions(installation, {u"translate"_s, u"--provider"_s, u""_s}), rawValues<AIProviderType>());
    EXPECT_EQ(completions(installation, {u"translate"_s, u"--to"_s, u""_s}), rawValues<TargetLanguage>());
    EXPECT_EQ(completions(installation, {u"polish"_s, u"--mode"_s, u""_s}), rawValues<PolishMode>());
    EXPECT_EQ(completions(installation, {u"--perform"_s, u""_s}),
              rawValues<HotKeyAction>() + QStringList{u"settings"_s});
    EXPECT_EQ(completions(installation, {u"key"_s, u"set"_s, u""_s}), rawValues<AIProviderType>());
    EXPECT_EQ(completions(installation, {u"autostart"_s, u"o"_s}), (QStringList{u"on"_s, u"off"_s}));
    EXPECT_TRUE(
        completions(installation, {u"settings"_s, u"get"_s, u"settings.t"_s}).contains(u"settings.targetLanguage"_s));
}

TEST(DesktopFiles, TheOtherShellsReadTheirCompletionsAndKnowTheSameWords)
{
    const Installation installation;
    const QString zsh = u"/usr/share/zsh/vendor-completions/_orvesa-translate"_s;
    const QString fish = u"/usr/share/fish/vendor_completions.d/orvesa-translate.fish"_s;
    const ToolResult readByZsh = run(u"zsh"_s, {u"-n"_s, installation.file(zsh)});
    EXPECT_EQ(readByZsh.exitCode, 0) << readByZsh.output.constData();
    const ToolResult offered =
        run(u"fish"_s,
            {u"--no-config"_s, u"-c"_s,
             u"source %1; complete -C 'orvesa-translate polish --mode '; complete -C 'orvesa-translate '"_s.arg(
                 installation.file(fish))},
            installation.environment());
    EXPECT_EQ(offered.exitCode, 0) << offered.output.constData();
    for (const QString &mode : rawValues<PolishMode>()) {
        EXPECT_TRUE(QString::fromUtf8(offered.output).contains(mode)) << offered.output.constData();
    }
    EXPECT_TRUE(offered.output.contains("doctor"));
    const QStringList words = rawValues<AIProviderType>() + rawValues<PolishMode>() + rawValues<HotKeyAction>() +
                              QStringList{u"translate"_s, u"polish"_s,    u"prompt"_s, u"recognize"_s, u"settings"_s,
                                          u"key"_s,       u"autostart"_s, u"doctor"_s, u"--network"_s};
    for (const QString &word : words) {
        EXPECT_TRUE(installation.content(zsh).contains(word.toUtf8())) << word.toStdString();
        EXPECT_TRUE(installation.content(fish).contains(QString(word).remove(u"--"_s).toUtf8())) << word.toStdString();
    }
}

} // namespace
} // namespace orvesa::packaging
