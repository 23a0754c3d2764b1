// orvesa-pictures [FOLDER]: takes the pictures of the documentation, of the real program on a private desktop. FOLDER
// is docs/images unless it is named. Ends with 0, or with 1 and the reason on standard error.

#include "desktop/Pictures.h"
#include "desktop/TranslateProgram.h"

#include <QCoreApplication>
#include <QDir>

#include <exception>
#include <iostream>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString folder = QCoreApplication::arguments().value(1, u"docs/images"_s);
    if (!QDir().mkpath(folder)) {
        std::cerr << "The folder for the pictures cannot be made." << std::endl;
        return 1;
    }
    try {
        orvesa::desktop::Pictures pictures(orvesa::desktop::TranslateProgram::pathBeside(), folder);
        for (const orvesa::AppLanguage language : orvesa::allCases<orvesa::AppLanguage>()) {
            pictures.take(language);
        }
        return 0;
    } catch (const std::exception &failure) {
        std::cerr << "The pictures failed: " << failure.what() << std::endl;
        return 1;
    }
}
