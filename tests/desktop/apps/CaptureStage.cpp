#include "desktop/apps/CaptureStage.h"

#include "service/ServiceAnswers.h"

#include <QRegularExpression>

#include <cstdio>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

/// No fingers type faster.
constexpr std::chrono::milliseconds betweenKeys{40};

} // namespace

const QString CaptureStage::sample =
    u"  Hello 世界 こんにちは 👩‍👩‍👧‍👦\nzweite Zeile\n\n\tEnde."_s;
const QString CaptureStage::nothingSelected = u"No text is selected. Select some text in any app and try again."_s;

void CaptureStage::setUp(const DesktopOptions &options)
{
    desktop = std::make_unique<Desktop>(options);
    service.setResponder(
        [](const service::ServiceRequest &request) { return service::protocolResponse(request, u"the answer"_s); });
    program = std::make_unique<TranslateProgram>(*desktop, TranslateProgram::pathBeside());
    program->setService(service.address());
    program->setVariable(u"QT_LOGGING_RULES"_s, u"orvesa.capture.debug=true"_s);
    program->storeKey("no-real-key");
    program->start();
    desktop->pointer().moveTo(QPoint(desktop->options().screenSize.width() - 5, 5));
}

void CaptureStage::TearDown()
{
    if (program) {
        EXPECT_TRUE(program->process().isRunning()) << program->process().standardError().toStdString();
    }
    if (desktop) {
        EXPECT_TRUE(desktop->keyboard().keysDown().empty()) << "a key is stuck";
    }
}

Process &CaptureStage::copyPicture(qsizetype bytes)
{
    if (m_owner != nullptr) {
        m_owner->terminate();
    }
    m_owner = &desktop->launch(QStringLiteral(ORVESA_CLIPBOARD_PROBE), {u"own"_s, QString::number(bytes), u"2"_s});
    EXPECT_EQ(m_owner->readLine(), "owns");
    waitUntil([this] { return desktop->selections().text(Selection::clipboard) == u"kept"_s; }, u"the copy"_s);
    return *m_owner;
}

QByteArray CaptureStage::clipboard()
{
    const QByteArray contents = desktop->runToEnd(QStringLiteral(ORVESA_CLIPBOARD_PROBE), {u"read"_s}).standardOutput;
    return contents +
           desktop->runToEnd(u"xclip"_s, {u"-out"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s, u"TARGETS"_s})
               .standardOutput;
}

QStringList CaptureStage::captureLines() const
{
    QStringList lines;
    for (const QByteArray &line : program->process().standardError().split('\n')) {
        if (line.startsWith("orvesa.capture: ")) {
            lines.append(QString::fromUtf8(line.sliced(16)));
        }
    }
    return lines;
}

Captured CaptureStage::capture(std::chrono::milliseconds hold)
{
    const qsizetype before = captureLines().size();
    const std::size_t requests = service.requests().size();
    desktop->keyboard().pressByHand(u"Alt+d"_s, hold);
    processEventsFor(betweenKeys);
    waitUntil([&] { return captureLines().size() > before; }, u"the capture"_s);
    Captured captured;
    captured.line = captureLines().at(before);
    static const QRegularExpression parts(u"^(text|no text) after (\\d+) ms: .*?([^,]+) \\d+ ms$"_s);
    const QRegularExpressionMatch match = parts.match(captured.line);
    captured.milliseconds = match.captured(2).toInt();
    captured.strategy = match.captured(3).trimmed();
    if (match.captured(1) == "text"_L1) {
        EXPECT_TRUE(service.waitForRequests(requests + 1));
        waitUntil([this] { return program->result() == u"the answer"_s; }, u"the answer"_s);
        captured.text = program->source();
    } else {
        waitUntil([this] { return !program->result().isEmpty() && program->result() != u"the answer"_s; },
                  u"the message"_s);
        captured.message = program->result();
        EXPECT_EQ(service.requests().size(), requests);
    }
    return captured;
}

Process &CaptureStage::open(const QString &name, const QStringList &arguments, const QString &windowClass,
                            const EnvironmentChanges &changes, std::chrono::milliseconds deadline)
{
    Process &process = desktop->launch(name, arguments, changes);
    m_window = desktop->windows().awaitWindow({.className = windowClass}, deadline);
    desktop->windows().awaitActive(m_window, deadline);
    return process;
}

Accessible CaptureStage::awaitFocusedText(qint64 pid, std::chrono::milliseconds deadline)
{
    return desktop->accessibles().await(
        [&] {
            return desktop->accessibles().application(pid).find([](const Accessible &accessible) {
                return accessible.has(AccessibleState::focused) &&
                       accessible.interfaces().contains(u"org.a11y.atspi.Text"_s);
            });
        },
        u"a text with the keyboard"_s, deadline);
}

void CaptureStage::select(const QString &keys, const QString &text)
{
    desktop->keyboard().press(keys);
    desktop->selections().awaitText(Selection::primary, text);
}

QString CaptureStage::contentByKeys()
{
    const int before = desktop->selections().changes(Selection::clipboard);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->keyboard().press(u"Ctrl+c"_s);
    waitUntil([&] { return desktop->selections().changes(Selection::clipboard) > before; }, u"the copy by keys"_s);
    return desktop->selections().text(Selection::clipboard).value_or(QString());
}

void CaptureStage::note(const QString &column, const Captured &captured)
{
    std::printf("%s: %s\n", qPrintable(column), qPrintable(captured.line));
    RecordProperty(column.toStdString(), captured.line.toStdString());
}

} // namespace orvesa::desktop
