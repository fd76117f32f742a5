#ifndef KESTREL_PLATFORM_POSIX_BRINDLEERROR_H
#define KESTREL_PLATFORM_POSIX_BRINDLEERROR_H

#include <stdint.h>

/* Functions that a shared library exports to provide the reporting object "BrindleError.Error"; plain C.
 *
 * All texts are UTF-8, end with a NUL, use CR LF as line end, and belong to their sender: the component's
 * are valid during the call, the library's until the next call with the same object. Calls are made on the
 * thread on which the error occurred, one at a time. No exception may leave a function.
 *
 * docs/error-reporting.md describes the contents. */

#ifdef __cplusplus
extern "C" {
#endif

/* A new reporting object, or NULL on failure; the built-in box then shows the report. */
void* brindle_error_create(void);

/* Takes one report. The object may change *number and *line. Returns 0, or the number of an error, which is
 * then raised in the component. */
int32_t brindle_error_handler(void* object, int32_t* number, const char* project, const char* module,
                              const char* procedure, const char* description, int32_t* line,
                              const char* variables, const char* version);

/* The action requested for the last report; NULL counts as an empty text. */
const char* brindle_error_action(void* object);

/* Destroys the object. */
void brindle_error_destroy(void* object);

#ifdef __cplusplus
}
#endif

#endif
