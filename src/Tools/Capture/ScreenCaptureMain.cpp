// orvesa-screencapture -i -x PATH: lets the user drag out a rectangle of the screen, and writes it as a PNG. No file:
// the user cancelled, or it failed with a message.

#include "Platform/linux/WaylandSession.h"
#include "Tools/Capture/ImageOutput.h"
#include "Tools/Capture/PortalCapture.h"
#include "Tools/Capture/X11Capture.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <signal.h>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;
using namespace orvesa;

namespace {

QString captureTo(const QString &path, int &argc, char **argv)
{
    // Under Wayland an X server is there too, but shows X11 windows alone.
    if (WaylandSession::isRunning()) {
        return captureThroughPortal(argc, argv, path);
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        return u"there is no display to capture"_s;
    }
    const CaptureOutcome outcome = captureOnX11(argc, argv);
    if (!outcome.failure.isEmpty() || outcome.image.isNull()) {
        return outcome.failure;
    }
    return writeCapture(path, outcome.image, outcome.scale);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4 || std::strcmp(argv[1], "-i") != 0 || std::strcmp(argv[2], "-x") != 0 || *argv[3] == '\0') {
        std::fprintf(stderr, "usage: orvesa-screencapture -i -x PATH\n");
        return 2;
    }
    // Whoever asked may die; nobody would take the capture then.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const QString failure = captureTo(QFile::decodeName(argv[3]), argc, argv);
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "orvesa-screencapture: %s\n", qUtf8Printable(failure));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
