// What the sanitizer build's programs start with, whoever starts them.

extern "C" {

const char *__asan_default_options();
const char *__lsan_default_suppressions();

const char *__asan_default_options()
{
    // Freed memory is kept for a while, which a test of bounded memory must not see as in use.
    return "quarantine_size_mb=16";
}

const char *__lsan_default_suppressions()
{
    // What libraries keep until the process ends: Qt its description of the tray's D-Bus interface, OpenSSL the error state
    // of threads that end after it has cleaned up, Qt again the input that comes between the event loop's end and its own.
    return "leak:libQt6DBus.so\nleak:libcrypto.so\nleak:libQt6Gui.so\n";
}

} // extern "C"
