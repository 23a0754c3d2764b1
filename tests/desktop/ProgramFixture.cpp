#include "desktop/ProgramFixture.h"

#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

const QString ProgramFixture::missingKeyMessage =
    u"API key is missing for the selected provider. Add it in Settings."_s;

void ProgramFixture::setUp(const DesktopOptions &options)
{
    key = "test-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    desktop = std::make_unique<Desktop>(options);
    program = std::make_unique<TranslateProgram>(*desktop, TranslateProgram::pathBeside());
    program->setService(service.address());
    if (options.keyStore == KeyStore::unlocked && options.sessionBus == SessionBus::present)
        program->storeKey(key);
}

void ProgramFixture::startOver(const QString &text)
{
    program->start();
    editor = std::make_unique<TextEditor>(*desktop, text);
    editor->selectAll();
    desktop->pointer().moveTo(editor->middle());
}

void ProgramFixture::pressTranslate()
{
    desktop->keyboard().press(u"Alt+d"_s);
}

QString ProgramFixture::awaitResultWith(const QString &part)
{
    return program->awaitResult([&](const QString &text) { return text.contains(part); },
                                u"a result with '%1'"_s.arg(part));
}

service::ServiceResponse ProgramFixture::answer(const QString &text)
{
    return service::ServiceResponse::json(service::chatCompletionAnswer(text));
}

} // namespace orvesa::desktop
