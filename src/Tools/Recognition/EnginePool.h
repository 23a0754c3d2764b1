#pragma once

// The recognition engines on two threads of their own: one for Japanese, one for Chinese, English on both.
//
// Loading begins with the pool and goes on while its owner does something else. One owner thread posts readings and
// waits for them; images and results that it names must live until then.

#include "Tools/Recognition/Engine.h"

#include <QStringList>

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace orvesa {

enum class Language { english, japanese, traditionalChinese, japaneseDown, traditionalChineseDown };

class EnginePool final {
public:
    EnginePool();
    ~EnginePool();
    EnginePool(const EnginePool &) = delete;
    EnginePool &operator=(const EnginePool &) = delete;

    /// Has the image read; the result stays empty where the language is not installed.
    void read(Language language, const GrayImage &image, Engine::Layout layout, Reading &result);
    /// Has the language loaded, if it is installed.
    void load(Language language);
    /// Until everything that was posted is read.
    void wait();
    /// Until the languages that horizontal text needs are loaded or known to be missing.
    void waitUntilLoaded();
    /// Of those that were asked for, what is not installed, by the names of Debian's packages.
    [[nodiscard]] QStringList missingPackages();
    /// Whether any of the languages of horizontal text is installed. To be asked after waitUntilLoaded().
    [[nodiscard]] bool hasLanguages();

private:
    struct Task {
        Language language = Language::english;
        const GrayImage *image = nullptr; ///< none: the language is only loaded
        Engine::Layout layout = Engine::Layout::block;
        Reading *result = nullptr;
    };
    struct Worker {
        std::deque<Task> tasks;
        std::map<Language, std::unique_ptr<Engine>> engines; ///< of this thread alone
        std::thread thread;
    };

    void run(Worker &worker);
    void perform(Worker &worker, const Task &task);
    static void unloadTwin(Worker &worker, Language language);
    [[nodiscard]] bool hasTask(const Worker &worker) const;
    Worker &workerFor(Language language);

    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::condition_variable m_finished;
    std::deque<Task> m_english; ///< for whichever thread comes first
    Worker m_first;
    Worker m_second;
    int m_open = 0; ///< tasks posted and not finished
    bool m_ending = false;
    std::set<Language> m_loaded;
    std::set<Language> m_missing;
};

} // namespace orvesa
