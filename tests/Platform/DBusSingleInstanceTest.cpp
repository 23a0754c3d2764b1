#include "Platform/linux/DBusSingleInstance.h"

#include "Platform/AdoptedDesktop.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

desktop::DesktopOptions busOnly()
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

const QString identifier = u"com.example.one-app"_s;

QStringList callOf(const QString &method, const QStringList &arguments)
{
    return QStringList{u"call"_s,          u"--session"_s,
                       u"--dest"_s,        identifier,
                       u"--object-path"_s, u"/com/example/one_app"_s,
                       u"--method"_s,      u"org.freedesktop.Application."_s + method} +
           arguments;
}

} // namespace

TEST(DBusSingleInstanceTest, ServesOthersWhileItIsTheOne)
{
    AdoptedDesktop desktop(busOnly());
    int activations = 0;
    QStringList actions;
    auto instance = std::make_unique<DBusSingleInstance>();
    EXPECT_EQ(instance->claim(identifier, {.activate = [&] { ++activations; },
                                           .perform = [&](const QString &action) { actions.append(action); }}),
              SingleInstancePort::Claim::owned);
    desktop::Process &activate = desktop->launch(u"gdbus"_s, callOf(u"Activate"_s, {u"{}"_s}));
    waitUntil([&] { return activations == 1; }, u"the activation"_s);
    EXPECT_EQ(activate.awaitEnd().exitCode, 0);
    desktop::Process &perform =
        desktop->launch(u"gdbus"_s, callOf(u"ActivateAction"_s, {u"translateSelection"_s, u"[]"_s, u"{}"_s}));
    waitUntil([&] { return actions == QStringList{u"translateSelection"_s}; }, u"the action"_s);
    EXPECT_EQ(perform.awaitEnd().exitCode, 0);
    desktop::Process &open = desktop->launch(u"gdbus"_s, callOf(u"Open"_s, {u"[]"_s, u"{}"_s}));
    waitUntil([&] { return activations == 2; }, u"the opening"_s);
    EXPECT_EQ(open.awaitEnd().exitCode, 0);

    instance.reset();
    DBusSingleInstance next;
    EXPECT_EQ(next.claim(identifier, {}), SingleInstancePort::Claim::owned) << "the name was given back";
}

TEST(DBusSingleInstanceTest, FindsTheOneThatRuns)
{
    AdoptedDesktop desktop(busOnly());
    desktop::Process &probe = desktop->launch(QStringLiteral(ORVESA_INSTANCE_PROBE), {identifier});
    EXPECT_EQ(probe.readLine(), "owned");
    DBusSingleInstance instance;
    EXPECT_EQ(instance.claim(identifier, {}), SingleInstancePort::Claim::runsAlready);
    EXPECT_TRUE(instance.ask(identifier, {}));
    EXPECT_EQ(probe.readLine(), "activate");
    EXPECT_TRUE(instance.ask(identifier, u"prompt:Fix \"it\""_s));
    EXPECT_EQ(probe.readLine(), "perform prompt:Fix \"it\"");
    probe.freeze();
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(instance.ask(identifier, {}));
    EXPECT_GE(timer.elapsed(), 1500);
    EXPECT_LT(timer.elapsed(), 4000);
    probe.thaw();
    probe.terminate();
    EXPECT_FALSE(instance.ask(identifier, {})) << "nobody is started by asking";
}

TEST(DBusSingleInstanceTest, RunsAnywayWithoutABus)
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    DBusSingleInstance instance;
    EXPECT_EQ(instance.claim(identifier, {}), SingleInstancePort::Claim::unavailable);
    EXPECT_FALSE(instance.ask(identifier, {}));
}

} // namespace orvesa
