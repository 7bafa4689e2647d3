// What AddressSanitizer is to leave alone in this program. It takes note of each loaded library's own
// thread-local variables by looking at how the C library allocates them, misreads that when they are first
// touched while the library is being loaded, and then fails over its own notes at the end.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "intercept_tls_get_addr=0";
}
