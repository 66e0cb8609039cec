// Loaded into each process of an application before all libraries, by LD_PRELOAD: has the agent
// loaded once an application object with windows is made. For programs in which Qt does not find the
// plugin, because they set the paths of their libraries. Linked to nothing but the C library: it gets
// into shells and programs of other toolkits, too.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <limits.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Places in the table that Qt keeps for debuggers.
enum { hookDataSize = 1, qtVersion = 2, startupHook = 5 };

static const unsigned supportedMajor = 5;
static const unsigned supportedMinor = 15;

static void (*previousHook)(void);

static void openAgent(void)
{
    Dl_info self;
    if (!dladdr((void *)&previousHook, &self) || !self.dli_fname)
        return;
    const char *slash = strrchr(self.dli_fname, '/');
    char path[PATH_MAX];
    const int length = slash ? (int)(slash - self.dli_fname) : 0;
    if (snprintf(path, sizeof path, "%.*s/generic/morvexagent.so", length, self.dli_fname) >=
        (int)sizeof path)
        return;
    void *agent = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!agent)
        fprintf(stderr, "the agent can't be loaded: %s\n", dlerror());
    void *start = agent ? dlsym(agent, "morvexStartAgentLater") : NULL;
    if (start)
        ((void (*)(void))start)();
}

static void handleStartup(void)
{
    if (previousHook)
        previousHook();
    // The agent would draw the libraries for windows into a program without any.
    if (dlsym(RTLD_DEFAULT, "_ZN15QGuiApplication16staticMetaObjectE"))
        openAgent();
}

__attribute__((constructor)) static void addHook(void)
{
    if (!getenv("MORVEX_AGENT_SOCKET"))
        return;
    uintptr_t *hookData = (uintptr_t *)dlsym(RTLD_DEFAULT, "qtHookData");
    if (!hookData || hookData[hookDataSize] <= startupHook ||
        hookData[qtVersion] >> 16 != supportedMajor ||
        (hookData[qtVersion] >> 8 & 0xff) < supportedMinor)
        return;
    previousHook = (void (*)(void))hookData[startupHook];
    hookData[startupHook] = (uintptr_t)&handleStartup;
}
