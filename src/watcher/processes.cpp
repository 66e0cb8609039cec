#include "processes.h"

#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <map>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int graceMs = 500;
const int forceMs = 10000;
const int stepMs = 5;

struct Process
{
    pid_t parent = 0;
    bool isRunning = false;
};

// What /proc says of a process; without a parent when it has none or no longer exists.
Process readProcess(const char *id)
{
    char text[512];
    const std::string path = std::string("/proc/") + id + "/stat";
    std::FILE *file = std::fopen(path.c_str(), "re");
    if (!file)
        return {};
    const std::size_t size = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[size] = 0;
    // The name before it may hold anything.
    const char *end = std::strrchr(text, ')');
    char state = 0;
    int parent = 0;
    if (!end || std::sscanf(end + 1, " %c %d", &state, &parent) != 2)
        return {};
    return {parent, state != 'Z' && state != 'X'};
}

std::map<pid_t, Process> allProcesses()
{
    std::map<pid_t, Process> processes;
    DIR *dir = ::opendir("/proc");
    if (!dir)
        return processes;
    while (const dirent *entry = ::readdir(dir)) {
        if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])))
            processes[std::atoi(entry->d_name)] = readProcess(entry->d_name);
    }
    ::closedir(dir);
    return processes;
}

// The table is no picture of one moment: a chain of parents may be without an end.
bool isBelow(const std::map<pid_t, Process> &processes, pid_t process, pid_t ancestor)
{
    for (std::size_t steps = 0; steps <= processes.size(); ++steps) {
        const auto found = processes.find(process);
        if (found == processes.end() || found->second.parent == 0)
            return false;
        process = found->second.parent;
        if (process == ancestor)
            return true;
    }
    return false;
}

bool hasVariable(pid_t process, const std::string &beginning)
{
    const std::string path = "/proc/" + std::to_string(process) + "/environ";
    std::FILE *file = std::fopen(path.c_str(), "re");
    if (!file)
        return false;
    // As if there were one before the first.
    std::string variables(1, '\0');
    char part[4096];
    for (std::size_t size; (size = std::fread(part, 1, sizeof part, file)) > 0;)
        variables.append(part, size);
    std::fclose(file);
    return variables.find('\0' + beginning) != std::string::npos;
}

bool killOthersWith(const std::string &beginning)
{
    bool isAny = false;
    for (const auto &entry : allProcesses()) {
        if (entry.first != ::getpid() && entry.second.isRunning &&
            hasVariable(entry.first, beginning) && ::kill(entry.first, SIGKILL) == 0)
            isAny = true;
    }
    return isAny;
}

// False once there are no children, living or dead.
bool reapAll()
{
    pid_t process;
    do {
        process = ::waitpid(-1, nullptr, WNOHANG);
    } while (process > 0);
    return process == 0;
}

// Whether there are none left after that time at most.
bool waitForDescendants(int milliseconds, int signal)
{
    for (int waited = 0; waited < milliseconds; waited += stepMs) {
        if (!reapAll())
            return true;
        if (signal != 0)
            signalDescendants(signal);
        const timespec step = {0, stepMs * 1000000L};
        ::nanosleep(&step, nullptr);
    }
    return !reapAll();
}

} // namespace

int signalDescendants(int signal)
{
    int count = 0;
    const std::map<pid_t, Process> processes = allProcesses();
    for (const auto &entry : processes) {
        if (entry.second.isRunning && isBelow(processes, entry.first, ::getpid()) &&
            ::kill(entry.first, signal) == 0)
            ++count;
    }
    return count;
}

void endDescendants()
{
    signalDescendants(SIGTERM);
    if (!waitForDescendants(graceMs, 0))
        waitForDescendants(forceMs, SIGKILL);
}

void endOthersWith(const char *beginning)
{
    // They may start others meanwhile.
    for (int waited = 0; waited < forceMs && killOthersWith(beginning); waited += stepMs) {
        const timespec step = {0, stepMs * 1000000L};
        ::nanosleep(&step, nullptr);
    }
}

} // namespace Morvex
