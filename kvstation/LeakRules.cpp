// The module leaves one hardware collector allocated for each collection, on purpose; the sanitized build is told.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:CollectHardware\n";
}

// Nothing of it on standard error.
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
