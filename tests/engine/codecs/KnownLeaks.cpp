// The font library keeps its caches until the process ends, through pointers that the leak checker of the
// sanitizers cannot follow.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
