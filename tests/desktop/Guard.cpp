// Ends what a private desktop has started, once the process that owns the desktop has ended it or has died.
//
// Usage: orvesa-desktop-guard MARK FOLDER, with "+PID" and "-PID" lines on standard input as process groups come and
// go. When the input ends it kills the groups that are left and every process that has MARK in its environment or
// descends from one that has, then removes FOLDER. Nothing else is ever signalled: a process is held by its descriptor
// while its mark is read.

#include "desktop/MarkedProcesses.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <string>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using namespace orvesa::desktop;

/// Kills the process if `stillWanted` holds while it cannot be mistaken for another one; then waits until it is gone.
template <typename Condition>
void killHeld(pid_t process, const Condition &stillWanted)
{
    constexpr int patienceMilliseconds = 2'000;
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0)
        return;
    if (stillWanted(process)) {
        syscall(SYS_pidfd_send_signal, descriptor, SIGKILL, nullptr, 0);
        pollfd ended{descriptor, POLLIN, 0};
        poll(&ended, 1, patienceMilliseconds);
    }
    close(descriptor);
}

/// One look over all processes; true when any was to be ended.
bool sweep(const std::string &mark)
{
    const std::map<pid_t, pid_t> ours = markedProcesses(mark);
    for (const auto &entry : ours)
        killHeld(entry.first, [&](pid_t process) {
            return entry.second == 0 ? carriesMark(process, mark) : parentOf(process) == entry.second;
        });
    return !ours.empty();
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const std::string mark = argv[1];
    const std::filesystem::path folder = argv[2];
    setsid(); // out of reach of what interrupts the test run
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        std::signal(signal, SIG_IGN);
    std::cout << "ready" << std::endl;

    std::set<pid_t> groups;
    for (std::string line; std::getline(std::cin, line);) {
        const auto group = static_cast<pid_t>(std::strtol(line.c_str() + 1, nullptr, 10));
        if (group > 1 && line.front() == '+')
            groups.insert(group);
        else
            groups.erase(group);
    }
    for (const pid_t group : groups)
        kill(-group, SIGKILL);
    constexpr int mostPasses = 20; // what starts processes faster than they are ended is not waited for
    for (int pass = 0; pass < mostPasses && sweep(mark); ++pass) {
    }
    std::error_code failure;
    if (folder.filename().string().starts_with("orvesa-desktop-"))
        std::filesystem::remove_all(folder, failure);
    return failure ? 1 : 0;
}
