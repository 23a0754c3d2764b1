// A command ends the process, whatever becomes of it.

#include "App/CompositionProcess.h"
#include "Platform/AutostartPort.h"
#include "Platform/TextRecognitionPort.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class BrokenRecognition final : public TextRecognitionPort {
public:
    void prepare() override {}
    QCoro::Task<std::optional<QStringList>> recognize(QString, std::stop_token) override
    {
        throw std::runtime_error("no memory");
        co_return std::nullopt;
    }
};

class NoAutostart final : public AutostartPort {
public:
    [[nodiscard]] bool isOn() const override { return false; }
    [[nodiscard]] bool turnOn() override { return false; }
    [[nodiscard]] bool turnOff() override { return false; }
};

TEST(CommandEnd, ComesWhenSomethingIsThrown)
{
    FakeUserDefaults defaults;
    const FakePreferredLanguages languages;
    FakeKeyStore keyStore;
    BrokenRecognition recognition;
    NoAutostart autostart;
    const Composition::CommandPorts ports{defaults, languages, keyStore, recognition, autostart, {}};
    bool isLate = false;
    QTimer::singleShot(std::chrono::seconds(10), QCoreApplication::instance(), [&isLate] {
        isLate = true;
        QCoreApplication::quit();
    });
    EXPECT_EQ(Composition::run(ports, CommandLine::Recognize{QCoreApplication::applicationFilePath()}),
              CommandLine::ExitCode::failure);
    EXPECT_FALSE(isLate);
}

} // namespace
} // namespace orvesa
