/* A host in C: every function of the interface once, without a display and with one. */
#include <kestrel.h>
#include <stdio.h>
#include <string.h>

static int failures = 0;

#define CHECK(fact)                                                                             \
  do {                                                                                          \
    if (!(fact)) {                                                                              \
      fprintf(stderr, "%d: %s: %s\n", __LINE__, #fact, kestrel_last_error()->description); \
      ++failures;                                                                               \
    }                                                                                           \
  } while (0)
#define OK(call) CHECK((call) == KESTREL_OK)

static kestrel_value text(const char* characters) {
  kestrel_value value = {.type = KESTREL_STRING, .as.string = {characters, KESTREL_TO_NUL}};
  return value;
}

static kestrel_status choose(void* user, kestrel_value* arguments, int32_t count) {
  ++*(int*)user;
  CHECK(count == 2);
  if (strcmp(arguments[0].as.string.data, "refused") == 0) return kestrel_set_error(75, "Host", "Not here.");
  OK(kestrel_value_set_string(&arguments[0], "chosen", KESTREL_TO_NUL));
  arguments[1].as.boolean = 1;
  return KESTREL_OK;
}

static void released(void* user) { *(int*)user += 100; }

static void check_errors(void) {
  kestrel_object* none = NULL;
  CHECK(kestrel_version() >= 0x020000);
  CHECK(kestrel_last_error()->number == KESTREL_OK);
  CHECK(kestrel_create("Nobody", &none) == KESTREL_CANNOT_CREATE);
  CHECK(kestrel_last_error()->number == KESTREL_CANNOT_CREATE);
  CHECK(strstr(kestrel_last_error()->description, "Nobody") != NULL);
  CHECK(none == NULL);
}

static void check_descriptions(void) {
  const kestrel_class* const* classes;
  const kestrel_enumeration* const* enumerations;
  int32_t count;
  OK(kestrel_classes(&classes, &count));
  CHECK(count > 50 && classes[0]->member_count > 0);
  OK(kestrel_enumerations(&enumerations, &count));
  CHECK(count >= 4 && enumerations[0]->constant_count > 0);
}

static void check_events(void) {
  kestrel_object* sink;
  kestrel_connection* connection;
  kestrel_value arguments[2] = {{0}};
  int calls = 0;
  OK(kestrel_create("IImageEvents", &sink));
  OK(kestrel_connect(sink, "RequestSaveFilename", choose, &calls, released, &connection));
  arguments[0] = text("old");
  arguments[1].type = KESTREL_BOOLEAN;
  OK(kestrel_call(sink, "RequestSaveFilename", arguments, 2, NULL, NULL));
  CHECK(strcmp(arguments[0].as.string.data, "chosen") == 0 && arguments[1].as.boolean == 1);
  kestrel_value_clear(&arguments[0]);
  arguments[0] = text("refused");
  CHECK(kestrel_call(sink, "RequestSaveFilename", arguments, 2, NULL, NULL) == 75);
  CHECK(strcmp(kestrel_last_error()->description, "Not here.") == 0);
  CHECK(calls == 2);
  OK(kestrel_disconnect(connection));
  CHECK(calls == 102);
  OK(kestrel_release(sink));
}

static void check_pictures(void) {
  static const uint8_t bytes[2 * 8] = {10, 20, 30, 255, 40, 50, 60, 255, 70, 80, 90, 255, 0, 0, 0, 0};
  const kestrel_pixels given = {bytes, 8, 2, 2, KESTREL_RGBA, 0};
  kestrel_pixels pixels;
  kestrel_pixel_lock* lock;
  kestrel_object *picture, *editor;
  kestrel_value document, writer, result, argument = {.type = KESTREL_OBJECT};
  OK(kestrel_create_picture(&given, &picture));
  OK(kestrel_create("ImgX", &editor));
  OK(kestrel_get(editor, "Document", &document));
  argument.as.object = picture;
  OK(kestrel_call(document.as.object, "FromPicture", &argument, 1, NULL, NULL));
  OK(kestrel_get(editor, "Writer", &writer));
  OK(kestrel_call(writer.as.object, "ToPicture", NULL, 0, NULL, &result));
  OK(kestrel_lock_pixels(result.as.object, &pixels, &lock));
  kestrel_value_clear(&result);
  CHECK(pixels.width == 2 && pixels.height == 2 && memcmp(pixels.data, bytes, 8) == 0);
  CHECK(memcmp(pixels.data + pixels.stride, bytes + 8, 8) == 0);
  OK(kestrel_unlock_pixels(lock));
  kestrel_value_clear(&writer);
  kestrel_value_clear(&document);
  OK(kestrel_release(editor));
  OK(kestrel_release(picture));
}

static void check_objects(void) {
  kestrel_object* editor;
  kestrel_value title = text("Title of a host"), result = {0}, bars = {0}, element = {0};
  const kestrel_class* description;
  const char* names[1] = {"Modal"};
  int32_t member = -1, same = 0, position = 0, found = 0;
  OK(kestrel_create("ImageProcessing", &editor));
  OK(kestrel_call(editor, "Initialize", NULL, 0, NULL, NULL));
  OK(kestrel_set(editor, "Title", &title));
  OK(kestrel_find_member(editor, "title", &member));
  OK(kestrel_invoke(editor, member, KESTREL_GET, NULL, 0, NULL, &result));
  CHECK(strcmp(result.as.string.data, "Title of a host") == 0);
  kestrel_value_clear(&result);
  element.type = KESTREL_BOOLEAN;
  OK(kestrel_call(editor, "Show", &element, 1, names, NULL));
  OK(kestrel_get(editor, "CommandBars", &bars));
  OK(kestrel_class_of(bars.as.object, &description));
  CHECK(strcmp(description->name, "CommandBars") == 0 && description->is_collection);
  while (kestrel_next(bars.as.object, &position, &element) == KESTREL_OK && position > 0) {
    ++found;
    kestrel_value_clear(&element);
  }
  CHECK(found > 1);
  OK(kestrel_is_same(bars.as.object, bars.as.object, &same));
  CHECK(same == 1);
  kestrel_value_clear(&bars);
  OK(kestrel_retain(editor));
  OK(kestrel_release(editor));
  OK(kestrel_release(editor));
  CHECK(kestrel_get(editor, "Title", &result) == KESTREL_OBJECT_GONE);
}

static void check_desktop(void) {
  kestrel_object *editor, *control;
  void* widget = NULL;
  uint64_t window = 0;
  int32_t reason = -1;
  OK(kestrel_create("ImageProcessing", &editor));
  OK(kestrel_call(editor, "Initialize", NULL, 0, NULL, NULL));
  OK(kestrel_call(editor, "Show", NULL, 0, NULL, NULL));
  OK(kestrel_process_events(0));
  OK(kestrel_run(editor, 20, &reason));
  CHECK(reason == KESTREL_RUN_TIMED_OUT);
  CHECK(kestrel_quit() == KESTREL_INVALID_CALL);
  OK(kestrel_embed("ImageBrowserCtl", NULL, &control, &widget, &window));
  CHECK(widget != NULL && window != 0);
  OK(kestrel_unembed(control));
  OK(kestrel_release(control));
  OK(kestrel_release(editor));
}

int main(void) {
  check_errors();
  check_descriptions();
  OK(kestrel_start(KESTREL_HEADLESS));
  check_events();
  check_pictures();
  check_objects();
  OK(kestrel_stop());
  OK(kestrel_start(KESTREL_DESKTOP));
  check_events();
  check_pictures();
  check_objects();
  check_desktop();
  OK(kestrel_stop());
  return failures;
}
