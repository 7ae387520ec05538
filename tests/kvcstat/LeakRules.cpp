// The hardware collector of each collection stays allocated on purpose, with what it owns: the leak checker is told,
// and a test of its own counts that nothing else stays.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:CollectHardware\n";
}

// Nothing of it on standard error.
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
