#include "Tools/Recognition/EnginePool.h"

#include <algorithm>
#include <array>
#include <utility>

#include <malloc.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

struct LanguageData {
    Language language = Language::english;
    const char *name = "";
    QLatin1StringView package;
};

constexpr std::array languageData{
    LanguageData{Language::english, "eng", "tesseract-ocr-eng"_L1},
    LanguageData{Language::japanese, "jpn", "tesseract-ocr-jpn"_L1},
    LanguageData{Language::traditionalChinese, "chi_tra", "tesseract-ocr-chi-tra"_L1},
    LanguageData{Language::japaneseDown, "jpn_vert", "tesseract-ocr-jpn-vert"_L1},
    LanguageData{Language::traditionalChineseDown, "chi_tra_vert", "tesseract-ocr-chi-tra-vert"_L1},
};

const LanguageData &dataOf(Language language)
{
    return *std::ranges::find(languageData, language, &LanguageData::language);
}

} // namespace

EnginePool::EnginePool()
{
    // English is loaded by both, so that plain pages are read by two threads.
    m_first.tasks = {{.language = Language::japanese}, {.language = Language::english}};
    m_second.tasks = {{.language = Language::traditionalChinese}, {.language = Language::english}};
    m_open = static_cast<int>(m_first.tasks.size() + m_second.tasks.size());
    m_first.thread = std::thread([this] { run(m_first); });
    m_second.thread = std::thread([this] { run(m_second); });
}

EnginePool::~EnginePool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_posted.notify_all();
    m_first.thread.join();
    m_second.thread.join();
}

EnginePool::Worker &EnginePool::workerFor(Language language)
{
    return language == Language::traditionalChinese || language == Language::traditionalChineseDown ? m_second
                                                                                                    : m_first;
}

void EnginePool::read(Language language, const GrayImage &image, Engine::Layout layout, Reading &result)
{
    {
        const std::lock_guard lock(m_mutex);
        auto &tasks = language == Language::english ? m_english : workerFor(language).tasks;
        tasks.push_back({language, &image, layout, &result});
        ++m_open;
    }
    m_posted.notify_all();
}

void EnginePool::load(Language language)
{
    {
        const std::lock_guard lock(m_mutex);
        workerFor(language).tasks.push_back({.language = language});
        ++m_open;
    }
    m_posted.notify_all();
}

void EnginePool::wait()
{
    std::unique_lock lock(m_mutex);
    m_finished.wait(lock, [this] { return m_open == 0; });
}

void EnginePool::waitUntilLoaded()
{
    wait();
}

QStringList EnginePool::missingPackages()
{
    const std::lock_guard lock(m_mutex);
    QStringList packages;
    for (const Language language : m_missing) {
        packages.append(dataOf(language).package);
    }
    return packages;
}

bool EnginePool::hasLanguages()
{
    const std::lock_guard lock(m_mutex);
    return !m_loaded.empty();
}

bool EnginePool::hasTask(const Worker &worker) const
{
    return !worker.tasks.empty() || !m_english.empty();
}

void EnginePool::run(Worker &worker)
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_posted.wait(lock, [&] { return m_ending || hasTask(worker); });
        if (m_ending) {
            return;
        }
        auto &tasks = worker.tasks.empty() ? m_english : worker.tasks;
        const Task task = tasks.front();
        tasks.pop_front();
        lock.unlock();
        perform(worker, task);
        lock.lock();
        if (--m_open == 0) {
            m_finished.notify_all();
        }
    }
}

/// Text that runs down is rare, and its models are as large as the others: a thread keeps one of the two.
void EnginePool::unloadTwin(Worker &worker, Language language)
{
    static constexpr std::array twins{std::pair(Language::japanese, Language::japaneseDown),
                                      std::pair(Language::traditionalChinese, Language::traditionalChineseDown)};
    for (const auto &[across, down] : twins) {
        if (language == across || language == down) {
            if (worker.engines.erase(language == across ? down : across) > 0) {
                ::malloc_trim(0);
            }
        }
    }
}

void EnginePool::perform(Worker &worker, const Task &task)
{
    auto found = worker.engines.find(task.language);
    if (found == worker.engines.end()) {
        unloadTwin(worker, task.language);
        found = worker.engines.emplace(task.language, Engine::load(dataOf(task.language).name)).first;
        const std::lock_guard lock(m_mutex);
        (found->second != nullptr ? m_loaded : m_missing).insert(task.language);
    }
    if (task.image != nullptr && found->second != nullptr) {
        *task.result = found->second->read(*task.image, task.layout);
    }
}

} // namespace orvesa
