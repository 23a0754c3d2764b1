#include "SettingsMeasurement.h"

#include "Core/SettingsStore.h"
#include "Platform/linux/FileUserDefaults.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdio>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

constexpr double nanosecondsPerMicrosecond = 1e3;
constexpr double mostAboveFloor = 1000;
const QString domain = u"com.example.bench"_s;

[[nodiscard]] double microseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsPerMicrosecond;
}

[[nodiscard]] QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("the preferences file cannot be read");
    }
    return file.readAll();
}

[[nodiscard]] ReportRow rowOf(const QString &title, const Samples &floor, const Samples &product)
{
    return {.title = title,
            .unit = u"us"_s,
            .decimals = 0,
            .floor = floor,
            .product = product,
            .goal = u"<= floor + %1 us"_s.arg(mostAboveFloor),
            .met = product.median() <= floor.median() + mostAboveFloor};
}

} // namespace

SettingsMeasurement::SettingsMeasurement() : m_languages({u"en"_s})
{
    FileUserDefaults defaults(domain, m_folder.path());
    SettingsStore store(defaults, m_languages);
    store.setDefaultProvider(AIProviderType::openAI);
    store.setTargetLanguage(TargetLanguage::japanese);
    store.setPolishMode(PolishMode::concise);
    store.setThinkingEnabled(true);
    store.setAppLanguage(AppLanguage::english);
    store.setTheme(AppTheme::ocean);
    store.setCombo({35, 2304, u"P"_s}, HotKeyAction::polishSelection);
    std::vector<CustomPrompt> prompts;
    constexpr int count = 20;
    for (int number = 0; number < count; ++number) {
        prompts.push_back(
            {.id = QUuid::createUuid(),
             .name = u"Prompt %1 日本語"_s.arg(number),
             .promptTemplate = u"Rewrite the text so that a \"reader\" understands it:\n{text}\n"_s.repeated(5),
             .hotKey = std::nullopt});
    }
    store.setCustomPrompts(std::move(prompts));
    for (const AIProviderType provider : allCases<AIProviderType>()) {
        store.setModel(u"a-model-of-ones-own"_s, provider);
    }
}

void SettingsMeasurement::measure(ReportTable &table, int rounds)
{
    Samples fileRead, settingsRead, fileWritten, settingChanged;
    for (int round = 0; round < rounds; ++round) {
        fileRead.add(readFile());
        settingsRead.add(readSettings());
        // Not always in the same order, for what comes first finds the disk in another state.
        for (const bool isFloor : {round % 2 == 0, round % 2 != 0}) {
            settle();
            if (isFloor) {
                fileWritten.add(writeFile());
            } else {
                settingChanged.add(changeSetting(round));
            }
        }
    }
    table.add(rowOf(u"all preferences read, floor: their file"_s, fileRead, settingsRead));
    table.add(rowOf(u"one preference changed, floor: write, fsync, rename"_s, fileWritten, settingChanged));
}

QString SettingsMeasurement::filePath() const
{
    return m_folder.filePath(domain + u".conf"_s);
}

void SettingsMeasurement::settle() const
{
    const int folder = ::open(QFile::encodeName(m_folder.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 || ::syncfs(folder) != 0 || ::close(folder) != 0) {
        throw std::runtime_error("the temporary folder cannot be synced");
    }
}

double SettingsMeasurement::readFile() const
{
    QElapsedTimer timer;
    timer.start();
    const QByteArray content = contentOf(filePath());
    const double time = microseconds(timer);
    if (content.isEmpty()) {
        throw std::runtime_error("there are no preferences");
    }
    return time;
}

double SettingsMeasurement::readSettings()
{
    QElapsedTimer timer;
    timer.start();
    FileUserDefaults defaults(domain, m_folder.path());
    const SettingsValues values = orvesa::readSettings(defaults, m_languages);
    const double time = microseconds(timer);
    if (values.targetLanguage != TargetLanguage::japanese || values.customPrompts.empty()) {
        throw std::runtime_error("the preferences were not read");
    }
    return time;
}

double SettingsMeasurement::writeFile() const
{
    const QByteArray content = contentOf(filePath());
    const QByteArray path = QFile::encodeName(m_folder.filePath(u"floor"_s));
    const QByteArray temporary = path + ".new";
    QElapsedTimer timer;
    timer.start();
    const int file = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    const bool isWritten =
        ::write(file, content.constData(), static_cast<std::size_t>(content.size())) == content.size() &&
        ::fsync(file) == 0 && ::close(file) == 0 && std::rename(temporary.constData(), path.constData()) == 0;
    const double time = microseconds(timer);
    if (!isWritten) {
        throw std::runtime_error("the temporary folder cannot be written");
    }
    return time;
}

double SettingsMeasurement::changeSetting(int round)
{
    FileUserDefaults defaults(domain, m_folder.path());
    SettingsStore store(defaults, m_languages);
    QElapsedTimer timer;
    timer.start();
    store.setTheme(round % 2 == 0 ? AppTheme::forest : AppTheme::ocean);
    const double time = microseconds(timer);
    if (defaults.hasUnwrittenChanges()) {
        throw std::runtime_error("the change was not written");
    }
    return time;
}

} // namespace orvesa::benchmark
