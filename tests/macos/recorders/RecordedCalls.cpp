#include "macos/recorders/RecordedCalls.h"

#include <mutex>

namespace orvesa::recorders {

namespace {

struct Record {
    std::mutex mutex;
    std::vector<std::string> calls;
    std::vector<std::string> misuses;
};

Record &record()
{
    static Record instance;
    return instance;
}

} // namespace

void note(const std::string &call)
{
    const std::lock_guard lock(record().mutex);
    record().calls.push_back(call);
}

std::vector<std::string> calls()
{
    const std::lock_guard lock(record().mutex);
    return record().calls;
}

void noteMisuse(const std::string &misuse)
{
    const std::lock_guard lock(record().mutex);
    record().misuses.push_back(misuse);
}

std::vector<std::string> misuses()
{
    const std::lock_guard lock(record().mutex);
    return record().misuses;
}

void forgetCalls()
{
    const std::lock_guard lock(record().mutex);
    record().calls.clear();
    record().misuses.clear();
}

} // namespace orvesa::recorders
