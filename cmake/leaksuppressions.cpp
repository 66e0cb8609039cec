// What leak checks must not report: the toolkit's platform for machines without a display never
// frees its screen, and the library of fonts keeps what it has read.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions();

extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\nleak:libfontconfig.so\n";
}

extern "C" __attribute__((visibility("default"))) const char *__lsan_default_options();

extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}
