/* Looks at the host in place of a user: linked with --wrap=kestrel_run, it is called where the host runs events. */
#include <kestrel.h>
#include <stdio.h>
#include <stdlib.h>

kestrel_status __real_kestrel_run(kestrel_object* window, int32_t milliseconds, int32_t* reason);
kestrel_status __wrap_kestrel_run(kestrel_object* window, int32_t milliseconds, int32_t* reason);

static void require(int fact, const char* what) {
  if (fact) return;
  fprintf(stderr, "%s: %s\n", what, kestrel_last_error()->description);
  exit(1);
}

kestrel_status __wrap_kestrel_run(kestrel_object* window, int32_t milliseconds, int32_t* reason) {
  kestrel_value visible, image, width;
  kestrel_status status;
  int32_t why = -1;
  require(milliseconds < 0 && reason == NULL, "The host runs for a limited time");
  require(__real_kestrel_run(window, 500, &why) == KESTREL_OK, "The events cannot be run");
  require(why == KESTREL_RUN_TIMED_OUT, "The window was closed");
  require(kestrel_get(window, "Visible", &visible) == KESTREL_OK, "There is no window");
  require(visible.type == KESTREL_BOOLEAN && visible.as.boolean, "The window is hidden");
  require(kestrel_get(window, "Image", &image) == KESTREL_OK, "There is no property Image");
  require(kestrel_get(image.as.object, "Width", &width) == KESTREL_OK, "There is no picture");
  require(width.as.int32 > 100, "The picture is not the expected one");
  kestrel_value_clear(&image);
  status = kestrel_call(window, "Terminate", NULL, 0, NULL, NULL);
  require(status == KESTREL_OK, "The window does not end");
  return __real_kestrel_run(window, milliseconds, reason);
}
