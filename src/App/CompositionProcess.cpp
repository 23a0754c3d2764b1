#include "App/CompositionProcess.h"

#include "App/AutostartCommand.h"
#include "App/BuildIdentity.h"
#include "App/CommandRunner.h"
#include "App/Job.h"
#include "App/KeyCommand.h"
#include "App/RecognizeCommand.h"
#include "App/SecretInput.h"
#include "App/SettingsCommand.h"
#include "App/WarmUp.h"
#include "Core/LegacyMigration.h"
#include "Platform/SingleInstancePort.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLoggingCategory>
#include <QScopeGuard>
#include <QSslConfiguration>
#include <QTimer>

#include <chrono>
#include <deque>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa::Composition {

using CommandLine::ExitCode;

namespace {

QString text(std::u16string_view view)
{
    return QStringView(view).toString();
}

/// Authorities of a company's own, in the variable that other programs read them from. They come on top of the
/// system's.
void addCertificateAuthorities()
{
    const QString file = qEnvironmentVariable("SSL_CERT_FILE");
    if (file.isEmpty()) {
        return;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (configuration.addCaCertificates(file)) {
        QSslConfiguration::setDefaultConfiguration(configuration);
    } else {
        qWarning("OrvesaTranslate: no certificates in the file that SSL_CERT_FILE names");
    }
}

/// What another process may ask of the utility, as soon as there is one.
SingleInstancePort::Handlers handlersOf(std::unique_ptr<Utility> &utility)
{
    return {
        .activate =
            [&utility] {
                if (utility) {
                    utility->delegate().openSettings();
                }
            },
        .perform =
            [&utility](const QString &action) {
                if (utility) {
                    utility->delegate().performNamed(action);
                }
            },
        .heldShortcuts = [&utility] { return utility ? utility->delegate().heldShortcuts() : QList<quint32>(); },
    };
}

/// Every command that has to wait for something.
QCoro::Task<ExitCode> runSuspending(const CommandPorts &ports, Services &services, CommandLine::Request request)
{
    if (const auto *key = std::get_if<CommandLine::Key>(&request)) {
        const KeyCommand command(services.keychain, SecretInput::read);
        co_return co_await command.run(*key);
    }
    if (const auto *image = std::get_if<CommandLine::Recognize>(&request)) {
        const RecognizeCommand command(ports.textRecognition);
        co_return co_await command.run(*image);
    }
    if (const auto *examination = std::get_if<CommandLine::Doctor>(&request)) {
        co_return co_await ports.doctor(services, *examination);
    }
    const CommandRunner runner(services.settings, services.providers);
    co_return co_await runner.run(request);
}

} // namespace

QString applicationName()
{
    return text(BuildIdentity::name);
}

QString bundleIdentifier()
{
    return text(BuildIdentity::bundleIdentifier);
}

void nameApplication()
{
    QCoreApplication::setApplicationName(applicationName());
    QCoreApplication::setApplicationVersion(text(BuildIdentity::version));
    // Qt reports every HTTP/2 stream that ends early, cancelled ones too; what matters reaches the user as a failure.
    QLoggingCategory::setFilterRules(u"qt.network.http2.warning=false"_s);
}

void migratePreferences(UserDefaultsPort &defaults)
{
    LegacyMigration::migrateUserDefaultsIfNeeded(
        defaults, QStringList{text(BuildIdentity::firstLegacyIdentifier), text(BuildIdentity::secondLegacyIdentifier)});
}

DeferredDeletion::~DeferredDeletion()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

ExitCode serve(SingleInstancePort &instance, const UtilityStart &start)
{
    std::unique_ptr<Utility> utility;
    if (instance.claim(bundleIdentifier(), handlersOf(utility)) == SingleInstancePort::Claim::runsAlready) {
        return instance.ask(bundleIdentifier(), QString()) ? ExitCode::success : ExitCode::failure;
    }
    utility = start.make();
    utility->delegate().applicationDidFinishLaunching();
    std::deque<WarmUp::Piece> pieces = utility->warmUpPieces();
    if (start.warmUp) {
        pieces.push_front(start.warmUp);
    }
    pieces.push_front(addCertificateAuthorities); // ahead of what a request would use
    WarmUp warmUp;
    warmUp.start(std::move(pieces));
    return QCoreApplication::exec() == 0 ? ExitCode::success : ExitCode::failure;
}

ExitCode run(const CommandPorts &ports, const CommandLine::Request &request)
{
    if (const auto *settings = std::get_if<CommandLine::Settings>(&request)) {
        return SettingsCommand(ports.userDefaults, ports.preferredLanguages).run(*settings);
    }
    if (const auto *entry = std::get_if<CommandLine::Autostart>(&request)) {
        return AutostartCommand(ports.autostart).run(*entry);
    }
    addCertificateAuthorities();
    Services services(ports.userDefaults, ports.preferredLanguages, ports.keyStore);
    ExitCode result = ExitCode::failure;
    QTimer::singleShot(std::chrono::milliseconds::zero(), QCoreApplication::instance(), [&] {
        (void)Job::start([&](std::stop_token) -> QCoro::Task<void> {
            // Also when it throws, or nobody would ever end the program.
            const auto end = qScopeGuard([] { QCoreApplication::quit(); });
            result = co_await runSuspending(ports, services, request);
        });
    });
    QCoreApplication::exec();
    return result;
}

} // namespace orvesa::Composition
