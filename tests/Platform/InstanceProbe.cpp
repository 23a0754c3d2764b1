// Claims an identifier on the session bus, prints how that went and then every request that arrives.

#include "Platform/linux/DBusSingleInstance.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

void say(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    using namespace Qt::StringLiterals;
    const QCoreApplication application(argc, argv);
    orvesa::DBusSingleInstance instance;
    const auto claim = instance.claim(QCoreApplication::arguments().value(1),
                                      {.activate = [] { say(u"activate"_s); },
                                       .perform = [](const QString &action) { say(u"perform "_s + action); }});
    say(claim == orvesa::SingleInstancePort::Claim::owned ? u"owned"_s : u"not owned"_s);
    return QCoreApplication::exec();
}
