#include "desktop/SettingsFixture.h"

#include <QFile>
#include <QFileSystemWatcher>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

QString preferencesPath(const Desktop &desktop)
{
    return desktop.folders().top() + u"/home/.config/%1.conf"_s.arg(TranslateProgram::identifier());
}

} // namespace

void SettingsFixture::setUpWithoutKey(const DesktopOptions &options)
{
    desktop = std::make_unique<Desktop>(options);
    program = std::make_unique<TranslateProgram>(*desktop, TranslateProgram::pathBeside());
    program->setService(service.address());
}

void SettingsFixture::openSettings()
{
    program->start();
    settings = std::make_unique<SettingsWindow>(*desktop, *program);
    settings->open();
}

std::optional<QByteArray> SettingsFixture::storedKey(const QString &account)
{
    return desktop->keyStore().lookup(TranslateProgram::identifier(), account);
}

QString SettingsFixture::preferences() const
{
    QFile file(preferencesPath(*desktop));
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void SettingsFixture::awaitPreference(const QString &text)
{
    const QFileSystemWatcher watcher({QFileInfo(preferencesPath(*desktop)).path()});
    waitUntil([&] { return preferences().contains(text); },
              u"'%1' among the preferences: %2"_s.arg(text, preferences()));
}

void SettingsFixture::awaitNoPreference(const QString &text)
{
    const QFileSystemWatcher watcher({QFileInfo(preferencesPath(*desktop)).path()});
    waitUntil([&] { return !preferences().contains(text); }, u"'%1' to leave the preferences"_s.arg(text));
}

} // namespace orvesa::desktop
