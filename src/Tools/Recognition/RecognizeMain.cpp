// orvesa-recognize IMAGE prints the text in an image file; orvesa-recognize --serve answers images on standard input;
// orvesa-recognize --missing prints the packages of the languages that it would read and that are not installed.

#include "Tools/Recognition/RecognitionServer.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace orvesa;

namespace {

constexpr const char *threadLimit = "OMP_THREAD_LIMIT";

/// The recognition library's own threads cost several times what they give on small pieces; it reads their limit when
/// it is loaded, which is before main().
void startAgainWithoutThreads(char **arguments)
{
    if (std::getenv(threadLimit) == nullptr && ::setenv(threadLimit, "1", 1) == 0) {
        ::execv("/proc/self/exe", arguments);
        // Without /proc it is slower, not wrong.
    }
}

void complain(const QString &message)
{
    std::fprintf(stderr, "orvesa-recognize: %s\n", qUtf8Printable(message));
}

/// Says what is missing of what was asked for, each package once, however many images come.
class MissingPackages final {
public:
    explicit MissingPackages(EnginePool &pool) : m_pool(pool) {}

    void complain()
    {
        QStringList missing = m_pool.missingPackages();
        missing.removeIf([this](const QString &package) { return m_said.contains(package); });
        if (!missing.isEmpty()) {
            ::complain(u"some languages cannot be read; install "_s + missing.join(u", "_s));
            m_said += missing;
        }
    }

private:
    EnginePool &m_pool;
    QStringList m_said;
};

int serve()
{
    // Whoever asked may die without a word.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::signal(SIGPIPE, SIG_IGN);
    EnginePool pool;
    pool.waitUntilLoaded();
    MissingPackages missing(pool);
    missing.complain();
    // What text that runs down needs is looked for when there is such a text.
    RecognitionServer server(STDIN_FILENO, STDOUT_FILENO, pool);
    return server.serve([&missing] { missing.complain(); }) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int recognizeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(file.errorString());
        return EXIT_FAILURE;
    }
    EnginePool pool;
    const RecognitionServer::Outcome outcome = RecognitionServer::recognize(pool, file.readAll());
    MissingPackages(pool).complain();
    if (!outcome.text) {
        complain(outcome.failure);
        return EXIT_FAILURE;
    }
    std::printf("%s\n", qUtf8Printable(*outcome.text));
    return EXIT_SUCCESS;
}

int printMissing()
{
    EnginePool pool;
    // Those that text that runs down needs are loaded for no other reason than such a text.
    pool.load(Language::japaneseDown);
    pool.load(Language::traditionalChineseDown);
    pool.waitUntilLoaded();
    const QStringList missing = pool.missingPackages();
    for (const QString &package : missing) {
        std::printf("%s\n", qUtf8Printable(package));
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char *argv[])
{
    startAgainWithoutThreads(argv);
    if (argc == 2 && std::strcmp(argv[1], "--serve") == 0) {
        return serve();
    }
    if (argc == 2 && std::strcmp(argv[1], "--missing") == 0) {
        return printMissing();
    }
    if (argc == 2 && argv[1][0] != '-') {
        return recognizeFile(QFile::decodeName(argv[1]));
    }
    std::fprintf(stderr,
                 "usage: orvesa-recognize IMAGE\n       orvesa-recognize --serve\n       orvesa-recognize --missing\n");
    return 2;
}
