#include "desktop/MarkedProcesses.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace orvesa::desktop {

namespace {

std::string contentOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::map<pid_t, pid_t> allProcesses()
{
    std::map<pid_t, pid_t> found;
    std::error_code failure;
    for (const auto &entry : std::filesystem::directory_iterator("/proc", failure)) {
        const std::string name = entry.path().filename();
        pid_t process = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), process).ptr != name.data() + name.size())
            continue;
        if (const pid_t parent = parentOf(process); parent != 0)
            found.emplace(process, parent);
    }
    return found;
}

} // namespace

bool carriesMark(pid_t process, const std::string &mark)
{
    const std::string environment = '\0' + contentOf("/proc/" + std::to_string(process) + "/environ");
    return environment.find('\0' + mark + '\0') != std::string::npos;
}

pid_t parentOf(pid_t process)
{
    // "PID (NAME) STATE PARENT ...", where NAME may hold anything.
    const std::string status = contentOf("/proc/" + std::to_string(process) + "/stat");
    const std::size_t afterName = status.rfind(')');
    if (afterName == std::string::npos || status.size() <= afterName + 4 || status[afterName + 2] == 'Z')
        return 0;
    pid_t parent = 0;
    std::from_chars(status.data() + afterName + 4, status.data() + status.size(), parent);
    return parent;
}

std::map<pid_t, pid_t> markedProcesses(const std::string &mark)
{
    const std::map<pid_t, pid_t> all = allProcesses();
    std::map<pid_t, pid_t> ours;
    for (const auto &entry : all)
        if (entry.first != getpid() && carriesMark(entry.first, mark))
            ours.emplace(entry.first, 0);
    for (bool grew = true; grew;) {
        grew = false;
        for (const auto &[process, parent] : all)
            if (process != getpid() && ours.contains(parent))
                grew = ours.emplace(process, parent).second || grew;
    }
    return ours;
}

} // namespace orvesa::desktop
