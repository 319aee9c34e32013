// Linked into every test program: allocations that system libraries keep for the life of the
// process are not the project's leaks. Built in rather than in LSAN_OPTIONS so that test discovery
// and a test run by hand see the same list.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n"
           "leak:libfontconfig.so\n"
           "leak:libdbus-1.so\n"
           "leak:libglib-2.0.so\n"
           "leak:libcrypto.so\n"
           "leak:libX11.so\n";
}
