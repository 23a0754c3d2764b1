#include "Platform/linux/TerminalPrograms.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace orvesa::TerminalPrograms {

namespace {

using namespace std::string_view_literals;

/// Window classes in lower case, with their separators as the programs write them.
constexpr std::array withoutCopyKeys{
    "xterm"sv,  "uxterm"sv, "koi8rxterm"sv, "lxterm"sv,      "urxvt"sv,  "rxvt"sv,        "rxvt-unicode"sv,
    "mrxvt"sv,  "aterm"sv,  "eterm"sv,      "wterm"sv,       "mlterm"sv, "kterm"sv,       "zutty"sv,
    "xiterm"sv, "mterm"sv,  "st"sv,         "st-256color"sv, "x3270"sv,  "virt-viewer"sv,
};
constexpr std::array withControlShift{
    "xfce4-terminal"sv,
    "gnome-terminal"sv,
    "gnome-terminal-server"sv,
    "org.gnome.terminal"sv,
    "org.gnome.console"sv,
    "kgx"sv,
    "org.gnome.ptyxis"sv,
    "ptyxis"sv,
    "com.raggesilver.blackbox"sv,
    "konsole"sv,
    "org.kde.konsole"sv,
    "yakuake"sv,
    "mate-terminal"sv,
    "lxterminal"sv,
    "qterminal"sv,
    "terminator"sv,
    "tilix"sv,
    "com.gexperts.tilix"sv,
    "guake"sv,
    "tilda"sv,
    "sakura"sv,
    "roxterm"sv,
    "deepin-terminal"sv,
    "pantheon-terminal"sv,
    "io.elementary.terminal"sv,
    "cool-retro-term"sv,
    "terminology"sv,
    "alacritty"sv,
    "kitty"sv,
    "org.wezfurlong.wezterm"sv,
    "com.mitchellh.ghostty"sv,
    "ghostty"sv,
    "contour"sv,
};

template <std::size_t size>
bool isIn(const std::array<std::string_view, size> &names, const QByteArray &name)
{
    const QByteArray lower = name.toLower();
    return std::ranges::find(names, std::string_view(lower.constData(), static_cast<std::size_t>(lower.size()))) !=
           names.end();
}

std::optional<qint64> number(std::string_view text)
{
    qint64 value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = result.ec == std::errc() && result.ptr == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
}

/// Every process by the one that started it.
std::multimap<qint64, qint64> processesByParent()
{
    std::multimap<qint64, qint64> result;
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator("/proc", error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const auto process = number(entry->path().filename().string());
        if (!process) {
            continue;
        }
        std::ifstream file(entry->path() / "stat");
        std::string line;
        std::getline(file, line);
        // "pid (name) state parent ...": the name may hold anything, brackets too.
        const std::size_t nameEnd = line.rfind(") ");
        const std::size_t parentAt = nameEnd == std::string::npos ? nameEnd : nameEnd + 4;
        if (parentAt >= line.size()) {
            continue;
        }
        const std::string_view rest = std::string_view(line).substr(parentAt);
        if (const auto parent = number(rest.substr(0, rest.find(' ')))) {
            result.emplace(*parent, *process);
        }
    }
    return result;
}

enum class Holding { no, yes, unknown };

Holding holding(qint64 process)
{
    std::error_code error;
    const auto folder = std::filesystem::path("/proc") / std::to_string(process) / "fd";
    auto entry = std::filesystem::directory_iterator(folder, error);
    if (error) {
        return Holding::unknown;
    }
    for (; entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (error) {
            return Holding::unknown;
        }
        std::error_code gone; // closed meanwhile
        const auto target = std::filesystem::read_symlink(entry->path(), gone);
        if (!gone && (target == "/dev/ptmx" || target == "/dev/pts/ptmx")) {
            return Holding::yes;
        }
    }
    return Holding::no;
}

} // namespace

std::optional<CopyKeys> copyKeys(const QByteArray &instanceName, const QByteArray &className)
{
    for (const QByteArray &name : {className, instanceName}) {
        if (isIn(withoutCopyKeys, name)) {
            return CopyKeys::none;
        }
    }
    for (const QByteArray &name : {className, instanceName}) {
        if (isIn(withControlShift, name)) {
            return CopyKeys::controlShift;
        }
    }
    return std::nullopt;
}

bool holdsTerminal(qint64 processIdentifier)
{
    // The window's own process must be readable. Those that it has started may be shut off from us, as the sandboxed
    // ones of browsers are, which cannot make terminals either.
    const Holding own = holding(processIdentifier);
    if (own != Holding::no) {
        return true;
    }
    const auto byParent = processesByParent();
    std::vector<qint64> pending{processIdentifier};
    while (!pending.empty()) {
        const qint64 parent = pending.back();
        pending.pop_back();
        const auto [first, last] = byParent.equal_range(parent);
        for (auto child = first; child != last; ++child) {
            if (holding(child->second) == Holding::yes) {
                return true;
            }
            pending.push_back(child->second);
        }
    }
    return false;
}

} // namespace orvesa::TerminalPrograms
