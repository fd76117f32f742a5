#include <kestrel.h>

int main(int argc, char** argv) {
  kestrel_object* editor;
  if (kestrel_create("ImageProcessing", &editor) != KESTREL_OK) return 1;
  kestrel_call(editor, "Initialize", NULL, 0, NULL, NULL);
  kestrel_call(editor, "Show", NULL, 0, NULL, NULL);
  if (argc > 1) {
    kestrel_value file = {.type = KESTREL_STRING, .as.string = {argv[1], KESTREL_TO_NUL}};
    kestrel_call(editor, "OpenImage", &file, 1, NULL, NULL);
  }
  kestrel_run(editor, -1, NULL);  // until the user closes the window
  kestrel_release(editor);
  return kestrel_stop();
}
