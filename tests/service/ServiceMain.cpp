// The loopback service as a program of its own. Prints its port on the first line of standard output and, with --tls,
// the path of the authority's certificate on the second; serves until it is ended.

#include "service/CommandResponder.h"
#include "service/LoopbackService.h"
#include "service/ServiceAnswers.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <sys/signalfd.h>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace orvesa::service;

namespace {

/// Makes the signals that end a program readable, so that the certificate's folder is cleared away in good order.
/// To be called before any thread starts.
[[nodiscard]] int endSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

} // namespace

int main(int argc, char *argv[])
{
    const int signals = endSignals();
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Answers like a language-model service, on this machine only."_s);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addHelpOption();
    const QCommandLineOption answer(u"answer"_s, u"Answers every prompt with this text."_s, u"TEXT"_s, u"Hello"_s);
    const QCommandLineOption tls(u"tls"_s, u"Speaks TLS, with a certificate made for this run."_s);
    const QCommandLineOption command(u"command"_s, u"Answers with what PROGRAM makes of each prompt's text."_s,
                                     u"PROGRAM"_s);
    parser.addOptions({answer, tls, command});
    parser.addPositionalArgument(u"arguments"_s, u"The program's arguments."_s, u"[ARGUMENT...]"_s);
    parser.process(application);

    LoopbackService service(parser.isSet(tls) ? LoopbackService::Transport::tls : LoopbackService::Transport::plain,
                            LoopbackService::Place::callerThread);
    if (parser.isSet(command)) {
        service.setResponder(commandResponder(parser.value(command), parser.positionalArguments()));
    } else {
        service.setResponder(
            [text = parser.value(answer)](const ServiceRequest &request) { return protocolResponse(request, text); });
    }
    const QSocketNotifier end(signals, QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    QTextStream output(stdout);
    output << service.port() << Qt::endl;
    if (parser.isSet(tls)) {
        output << service.certificate().authorityPath() << Qt::endl;
    }
    return QCoreApplication::exec();
}
