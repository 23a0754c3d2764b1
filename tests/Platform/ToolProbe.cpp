// Stands in for both tools: does what the variable ORVESA_PROBE says, well-behaved or not.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

/// Reads one request; false at the end of the input.
bool readRequest()
{
    char header[64] = {};
    if (std::fgets(header, sizeof header, stdin) == nullptr) {
        return false;
    }
    long count = std::strtol(header + std::strlen("IMAGE "), nullptr, 10);
    while (count-- > 0 && std::fgetc(stdin) != EOF) {
    }
    return true;
}

void say(const std::string &answer)
{
    std::fwrite(answer.data(), 1, answer.size(), stdout);
    std::fflush(stdout);
}

int serve(const std::string &manner)
{
    int served = 0;
    while (readRequest()) {
        ++served;
        if (manner == "crash") {
            std::abort();
        }
        if (manner == "hang") {
            ::pause();
        }
        if (manner == "rubbish") {
            say("what?\n");
        } else if (manner == "flood") {
            const std::string line(4096, 'x');
            while (std::fwrite(line.data(), 1, line.size(), stdout) == line.size()) {
            }
        } else if (manner == "endless") {
            say("TEXT 99999999999\n");
        } else if (manner == "failed") {
            say("FAILED no language data; install the packages some-package\n");
        } else if (manner == "slow") {
            say("TEXT 4\nsl");
            ::usleep(50'000);
            say("ow");
        } else {
            const std::string limit =
                std::getenv("OMP_THREAD_LIMIT") != nullptr ? std::getenv("OMP_THREAD_LIMIT") : "none";
            const std::string text = std::to_string(served) + '\n' + limit;
            say("TEXT " + std::to_string(text.size()) + '\n' + text);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const char *variable = std::getenv("ORVESA_PROBE");
    const std::string manner = variable != nullptr ? variable : "";
    if (argc == 2 && std::strcmp(argv[1], "--serve") == 0) {
        return serve(manner);
    }
    if (manner == "hang") {
        ::pause();
    }
    std::ofstream file(argv[argc - 1]);
    for (int index = 1; index < argc; ++index) {
        file << argv[index] << '\n';
    }
    return manner == "fail" ? 7 : 0;
}
