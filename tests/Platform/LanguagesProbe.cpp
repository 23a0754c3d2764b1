// Prints the preferred languages, one a line: the environment counts as it was when the process began.

#include "Platform/linux/LocalePreferredLanguages.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    for (const QString &language : orvesa::LocalePreferredLanguages().preferredLanguages()) {
        std::puts(qUtf8Printable(language));
    }
    return 0;
}
