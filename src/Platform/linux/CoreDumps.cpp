#include "Platform/linux/CoreDumps.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orvesa::CoreDumps {

void turnOff()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) == 0) {
        limit.rlim_cur = 0;
        (void)::setrlimit(RLIMIT_CORE, &limit);
    }
    // The kernel does not apply the limit to dumps that it pipes into a program. It leaves out of every dump what this
    // filter does not name.
    const int filter = ::open("/proc/self/coredump_filter", O_WRONLY | O_CLOEXEC);
    if (filter >= 0) {
        [[maybe_unused]] const ssize_t written = ::write(filter, "0", 1);
        ::close(filter);
    }
}

} // namespace orvesa::CoreDumps
