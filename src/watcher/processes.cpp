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

} // namespace Morvex
