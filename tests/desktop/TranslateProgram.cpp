#include "desktop/TranslateProgram.h"

#include <QCoreApplication>
#include <QTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

/// As a preferences file has it.
QByteArray quoted(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return '"' + escaped.toUtf8() + '"';
}

bool isShowing(const Accessible &accessible)
{
    return accessible.has(AccessibleState::showing);
}

} // namespace

TranslateProgram::TranslateProgram(Desktop &desktop, QString path)
    : m_desktop(desktop), m_path(std::move(path)), m_preferences{{u"settings.defaultProvider"_s, u"openAI"_s},
                                                                 {u"settings.targetLanguage"_s, u"English"_s},
                                                                 {u"settings.appLanguage"_s, u"en"_s}}
{
}

QString TranslateProgram::pathBeside()
{
    return QCoreApplication::applicationDirPath() + u"/orvesa-translate"_s;
}

QString TranslateProgram::identifier()
{
    return QStringLiteral(ORVESA_BUNDLE_IDENTIFIER);
}

void TranslateProgram::setPreference(const QString &key, const QString &value)
{
    m_preferences.insert(key, value);
}

void TranslateProgram::setService(const QString &address)
{
    setVariable(u"OPENAI_BASE_URL"_s, address + u"/v1"_s);
    setVariable(u"XAI_BASE_URL"_s, address + u"/v1"_s);
}

void TranslateProgram::setVariable(const QString &name, const QString &value)
{
    m_environment.insert(name, value);
}

void TranslateProgram::storeKey(const QByteArray &key)
{
    m_desktop.keyStore().store(identifier(), u"openai_api_key"_s, key);
}

EnvironmentChanges TranslateProgram::prepared(const EnvironmentChanges &changes)
{
    QByteArray lines;
    for (const auto &[key, value] : m_preferences.asKeyValueRange())
        lines += key.toUtf8() + " = " + quoted(value) + '\n';
    m_desktop.folders().write(u"home/.config/%1.conf"_s.arg(identifier()), lines);
    EnvironmentChanges environment = m_environment;
    for (const auto &[name, value] : changes.asKeyValueRange())
        environment.insert(name, value);
    return environment;
}

Process &TranslateProgram::start(const EnvironmentChanges &changes)
{
    m_process = &m_desktop.launch(m_path, {}, prepared(changes));
    QTimer look; // it may be on the bus, which is told, before it answers there, which nobody tells of
    look.start(std::chrono::milliseconds(20));
    // Whatever it answers, it answers from its event loop, which runs only after the shortcuts are in place.
    const auto answers = [this] {
        return !m_desktop.accessibles().application(m_process->pid()).role().isEmpty() || !m_process->isRunning();
    };
    waitUntil(answers, u"the program to answer on the accessibility bus"_s);
    if (!m_process->isRunning())
        throw DesktopError(u"the program ended at its start: %1"_s.arg(QString::fromUtf8(m_process->standardError())));
    return *m_process;
}

Process &TranslateProgram::startUnheard(const EnvironmentChanges &changes)
{
    m_process = &m_desktop.launch(m_path, {}, prepared(changes));
    QTimer look; // the server tells nobody of a new grab
    look.start(std::chrono::milliseconds(5));
    waitUntil([this] { return m_desktop.keyboard().isTaken(u"Alt+d"_s) || !m_process->isRunning(); },
              u"the program's shortcut"_s);
    if (!m_process->isRunning())
        throw DesktopError(u"the program ended at its start: %1"_s.arg(QString::fromUtf8(m_process->standardError())));
    return *m_process;
}

ProcessResult TranslateProgram::run(const QStringList &arguments, const EnvironmentChanges &changes,
                                    const QByteArray &input, std::chrono::milliseconds deadline)
{
    return m_desktop.runToEnd(m_path, arguments, prepared(changes), input, deadline);
}

Process &TranslateProgram::process() const
{
    if (m_process == nullptr)
        throw DesktopError(u"the program was not started"_s);
    return *m_process;
}

Accessible TranslateProgram::panel() const
{
    // Of its windows the one that shows a result.
    for (const Accessible &window : m_desktop.accessibles().windows(process().pid()))
        if (isShowing(window) && window.find([](const Accessible &accessible) {
                return accessible.name() == u"Result"_s && isShowing(accessible);
            }))
            return window;
    return {};
}

QString TranslateProgram::panelTitle() const
{
    return panel().name();
}

bool TranslateProgram::isPanelShown() const
{
    return !m_desktop.windows().mapped({.pid = process().pid()}).empty();
}

xcb_window_t TranslateProgram::awaitPanel(std::chrono::milliseconds deadline)
{
    return m_desktop.windows().awaitWindow({.pid = process().pid()}, deadline);
}

QString TranslateProgram::textNamed(const QString &name) const
{
    const Accessible found = panel().find([&](const Accessible &accessible) {
        return accessible.name() == name && isShowing(accessible) && !accessible.text().isEmpty() &&
               accessible.text() != name;
    });
    return found.text();
}

QString TranslateProgram::source() const
{
    return textNamed(u"Original"_s);
}

QString TranslateProgram::result() const
{
    return textNamed(u"Result"_s);
}

QString TranslateProgram::awaitResult(const std::function<bool(const QString &)> &condition, const QString &what,
                                      std::chrono::milliseconds deadline)
{
    QString text;
    const auto look = [&] {
        text = result();
        return (!text.isEmpty() && condition(text)) || !process().isRunning();
    };
    if (!happensWithin(deadline, look))
        throw DeadlineError(u"waited %1 ms in vain for %2; the panel reads: %3"_s.arg(deadline.count())
                                .arg(what, panel() ? panel().dump() : u"(it is hidden)"_s));
    if (!process().isRunning())
        throw DesktopError(u"the program ended: %1"_s.arg(QString::fromUtf8(process().standardError())));
    return text;
}

} // namespace orvesa::desktop
