#include "App/DesktopCommandLine.h"

using namespace Qt::StringLiterals;

namespace orvesa::DesktopCommandLine {

using namespace CommandLine;

Request parseAutostart(const QStringList &words)
{
    using Action = Autostart::Action;
    if (words == QStringList{u"on"_s}) {
        return Autostart{Action::on};
    }
    if (words == QStringList{u"off"_s}) {
        return Autostart{Action::off};
    }
    if (words == QStringList{u"status"_s}) {
        return Autostart{Action::status};
    }
    return UsageError{u"autostart takes: on, off, status"_s};
}

Request parseDoctor(const QStringList &words, Doctor::Reach reach)
{
    if (!words.isEmpty()) {
        return UsageError{u"doctor takes no words, only --network"_s};
    }
    return Doctor{reach};
}

} // namespace orvesa::DesktopCommandLine
