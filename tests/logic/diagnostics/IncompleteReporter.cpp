// A reporting library without the function that takes a report.
#include "BrindleError.h"

extern "C" {
void* brindle_error_create() { return nullptr; }
const char* brindle_error_action(void*) { return nullptr; }
void brindle_error_destroy(void*) {}
}
