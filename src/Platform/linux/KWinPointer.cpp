#include "Platform/linux/KWinPointer.h"

#include "Platform/linux/SessionBus.h"

#include <QCoroSignal>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <QStandardPaths>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

QString service()
{
    return u"org.kde.KWin"_s;
}

QString objectPath()
{
    return u"/com/orvesa/pointer"_s;
}

QDBusMessage scriptingCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service(), u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

/// Later versions give scripts other paths. The one that does not exist answers with an error, which nobody reads.
QStringList scriptPaths(int number)
{
    return {u"/%1"_s.arg(number), u"/Scripting/Script%1"_s.arg(number)};
}

} // namespace

KWinPointer::KWinPointer() : m_question(std::make_shared<PointerQuestion>(bound))
{
    connect(m_question.get(), &PointerQuestion::answered, this, &KWinPointer::unloadScript);
}

KWinPointer::~KWinPointer()
{
    m_question->answer(std::nullopt);
    if (m_script) {
        if (auto bus = SessionBus::connection()) {
            bus->unregisterObject(objectPath());
        }
    }
}

bool KWinPointer::isOffered()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"KDE"_s);
}

bool KWinPointer::prepare()
{
    if (m_script) {
        return true;
    }
    auto bus = SessionBus::connection();
    auto script = std::make_unique<QTemporaryFile>(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
                                                   u"/orvesa-pointer-XXXXXX.js"_s);
    if (!bus || !script->open() || !bus->registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots)) {
        return false;
    }
    const QString text = u"callDBus('%1', '%2', 'com.orvesa.Pointer1', 'at', Math.round(workspace.cursorPos.x), "
                         u"Math.round(workspace.cursorPos.y), Math.round(workspace.virtualScreenSize.width), "
                         u"Math.round(workspace.virtualScreenSize.height));\n"_s.arg(bus->baseService(), objectPath());
    script->write(text.toUtf8());
    script->close();
    m_script = std::move(script);
    return true;
}

QCoro::Task<std::optional<QPointF>> KWinPointer::place()
{
    auto bus = SessionBus::connection();
    if (!bus || !prepare()) {
        co_return std::nullopt;
    }
    // One who asks while a question is under way gets its answer, behind those who have asked before.
    if (!m_question->isAsked()) {
        m_question->ask();
        loadScript(*bus);
    }
    const std::shared_ptr<PointerQuestion> question = m_question;
    const std::optional<QPointF> answer = co_await qCoro(question.get(), &PointerQuestion::answered);
    co_return answer;
}

QString KWinPointer::scriptName() const
{
    return u"com.orvesa.pointer.%1"_s.arg(m_questions);
}

void KWinPointer::loadScript(const QDBusConnection &bus)
{
    ++m_questions;
    const QDBusMessage load = scriptingCall(u"loadScript"_s, {m_script->fileName(), scriptName()});
    auto *const loading = new QDBusPendingCallWatcher(bus.asyncCall(load, static_cast<int>(bound.count())), this);
    connect(loading, &QDBusPendingCallWatcher::finished, this, &KWinPointer::runScript);
}

void KWinPointer::unloadScript()
{
    if (auto bus = SessionBus::connection()) {
        bus->send(scriptingCall(u"unloadScript"_s, {scriptName()}));
    }
}

void KWinPointer::runScript(QDBusPendingCallWatcher *loading)
{
    loading->deleteLater();
    const QDBusPendingReply<int> number = *loading;
    auto bus = SessionBus::connection();
    if (number.isError() || !bus) {
        return;
    }
    for (const QString &path : scriptPaths(number.value())) {
        bus->send(QDBusMessage::createMethodCall(service(), path, u"org.kde.kwin.Script"_s, u"run"_s));
    }
}

void KWinPointer::at(int x, int y, int width, int height)
{
    if (width > 0 && height > 0) {
        m_question->answer(QPointF(static_cast<qreal>(x) / width, static_cast<qreal>(y) / height));
    }
}

} // namespace orvesa
