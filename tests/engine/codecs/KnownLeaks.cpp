// The font library keeps what it found for as long as the process lives, in a way that the leak checker of
// the sanitizers does not see.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
