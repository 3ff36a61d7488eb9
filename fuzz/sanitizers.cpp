// What the address sanitizer is told when a fuzzer starts; ASAN_OPTIONS still says otherwise. Memory that was freed is kept
// from use for longer than an input takes. By default it is kept for many inputs, which then find no memory in the caches.

extern "C" const char* __asan_default_options();  // NOLINT(*-reserved-identifier,cert-dcl*-c*): the sanitizer's name

extern "C" const char* __asan_default_options() {  // NOLINT(*-reserved-identifier,cert-dcl*-c*)
    return "quarantine_size_mb=8:thread_local_quarantine_size_kb=256";
}
