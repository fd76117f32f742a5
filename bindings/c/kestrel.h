#ifndef KESTREL_H
#define KESTREL_H

#include <stddef.h>
#include <stdint.h>

/// The C interface of KestrelLib2: its classes with their members and events by name, as script hosts use
/// them. docs/reference.md describes the classes, kestrel_constants.h has the numbers of the enumerations.
///
///     kestrel_object* editor;
///     kestrel_create("ImageProcessing", &editor);
///     kestrel_call(editor, "Initialize", NULL, 0, NULL, NULL);
///     kestrel_call(editor, "Show", NULL, 0, NULL, NULL);
///     kestrel_run(editor, -1, NULL);
///     kestrel_release(editor);
///     kestrel_stop();
///
/// Status. A function returns KESTREL_OK or the number of an error, which `kestrel_last_error` describes.
/// After an error, results are unchanged unless the function says otherwise. Pointers to results may be null
/// where the caller does not need them, except those by which a function returns a handle or a description.
///
/// Handles are checked on each use: a null handle, one that was released, or one whose object is gone, such
/// as an editor whose window was destroyed, is error 91.
///
/// Threads. A thread has a platform of its own with its own objects; see `kestrel_start`. An object is used
/// only on its thread: KESTREL_WRONG_THREAD. Handles may be released on any thread.
///
/// Texts are UTF-8. The search for names of classes, members, arguments and events ignores the case of ASCII
/// letters; a name that is null or no UTF-8 is one that does not exist.
///
/// The interface only grows: functions, and fields at the end of structures that the library allocates.

#if defined(__GNUC__)
#define KESTREL_API __attribute__((visibility("default")))
#else
#define KESTREL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

// -- Errors and version -----------------------------------------------------------------------------------

/// 0, or the number of an error: of the member that was called, or one of those below.
typedef int32_t kestrel_status;

enum {
  KESTREL_OK = 0,
  KESTREL_INVALID_CALL = 5,  ///< such as a null pointer, or one that the platform does not have
  KESTREL_OVERFLOW = 6,      ///< a number out of range
  KESTREL_OUT_OF_MEMORY = 7,
  KESTREL_TYPE_MISMATCH = 13,
  KESTREL_INTERNAL = 51,
  KESTREL_OBJECT_GONE = 91,  ///< the object is Nothing, was released, or no longer exists
  KESTREL_INVALID_NULL = 94,
  KESTREL_READ_ONLY = 383,
  KESTREL_WRITE_ONLY = 394,
  KESTREL_OBJECT_REQUIRED = 424,
  KESTREL_CANNOT_CREATE = 429,
  KESTREL_NO_SUCH_MEMBER = 438,
  KESTREL_NO_SUCH_ARGUMENT = 448,
  KESTREL_ARGUMENT_NOT_OPTIONAL = 449,
  KESTREL_NUMBER_OF_ARGUMENTS = 450,
  KESTREL_NO_SUCH_EVENT = 459,
  KESTREL_WRONG_THREAD = -2147417842
};

typedef struct kestrel_error {
  int32_t number;
  int32_t position;         ///< of the argument at fault, counted from 1; 0 if it is none
  const char* source;       ///< usually the name of the class
  const char* description;  ///< a sentence that a user can read
} kestrel_error;

/// The latest error of this thread, number 0 if there was none. Never null. Valid until the next call of a
/// function on this thread.
KESTREL_API const kestrel_error* kestrel_last_error(void);

/// Describes the error with which a handler of an event is about to end; see `kestrel_handler`. Texts may be
/// null. Returns `number`, or KESTREL_INTERNAL for 0.
KESTREL_API kestrel_status kestrel_set_error(int32_t number, const char* source, const char* description);

/// The library's version: major * 65536 + minor * 256 + revision.
KESTREL_API uint32_t kestrel_version(void);

// -- Values -----------------------------------------------------------------------------------------------

/// An object of the library. Not a pointer to memory.
typedef struct kestrel_object kestrel_object;

/// What is in a value.
enum {
  KESTREL_EMPTY = 0,
  KESTREL_NULL = 1,
  KESTREL_INT16 = 2,
  KESTREL_INT32 = 3,
  KESTREL_FLOAT = 4,
  KESTREL_DOUBLE = 5,
  KESTREL_STRING = 8,
  KESTREL_OBJECT = 9,  ///< `as.object`, null for Nothing
  KESTREL_BOOLEAN = 11,
  KESTREL_BYTE = 17,
  KESTREL_OMITTED = -1  ///< as an argument: not given
};

/// As the length of a text: it ends with a NUL.
#define KESTREL_TO_NUL ((size_t)-1)

typedef struct kestrel_string {
  const char* data;  ///< null for an empty text; a text of the library is followed by a NUL
  size_t length;     ///< in bytes, without that NUL; or KESTREL_TO_NUL
} kestrel_string;

/// A tagged value. All zero is Empty.
///
/// A caller fills `type` and the field of that type, and leaves `owned` at 0: text and object remain its own
/// and the library copies the one and retains the other as needed. What the library writes into a value
/// belongs to the caller, who calls `kestrel_value_clear`; a result is written without regard to what was in
/// it.
typedef struct kestrel_value {
  int32_t type;   ///< KESTREL_EMPTY to KESTREL_OMITTED
  int32_t owned;  ///< not 0: the text or the object is released by `kestrel_value_clear`
  union {
    uint8_t byte;
    int16_t int16;
    int32_t int32;
    float float32;
    double float64;
    int32_t boolean;  ///< 0 or 1; any number but 0 is true
    kestrel_string string;
    kestrel_object* object;
  } as;
} kestrel_value;

/// Releases what the value owns and makes it Empty. Null is allowed.
KESTREL_API void kestrel_value_clear(kestrel_value* value);

/// Clears the value and makes it a copy of the text, which is null for an empty one. For a handler that
/// returns a text in an argument.
KESTREL_API kestrel_status kestrel_value_set_string(kestrel_value* value, const char* text, size_t length);

// -- Platform and event loop ------------------------------------------------------------------------------

enum {
  KESTREL_DESKTOP = 1,  ///< windows on the user's display
  KESTREL_HEADLESS = 2  ///< no display and no user, for batch work
};

/// Starts this thread with a platform. Without it the first `kestrel_create` or `kestrel_embed` starts with
/// KESTREL_DESKTOP. Does nothing if the thread has that platform; error 5 if it has the other one.
/// On a headless thread a question to the user is answered as by Cancel, and written to standard error.
///
/// The desktop is one thread of the process, by the toolkit's rules the main thread. There it joins the
/// application object of a Qt program, and otherwise makes one. Error 429 if there is no display, or if the
/// program's application object is one without windows. Any number of other threads can be headless.
KESTREL_API kestrel_status kestrel_start(int32_t platform);

/// Ends all objects of this thread and its platform; `kestrel_start` starts anew. Handles that are left are
/// those of objects that are gone; they need to be released, or can be forgotten at the end of the program.
/// A desktop is stopped before `main` returns and, in a Qt program, before its application object ends.
/// Error 5 within a call or a handler of this library.
KESTREL_API kestrel_status kestrel_stop(void);

/// Processes the events that are pending, and if there are none waits at most that many milliseconds for
/// some.
KESTREL_API kestrel_status kestrel_process_events(int32_t milliseconds);

/// Why `kestrel_run` has returned.
enum {
  KESTREL_RUN_QUIT = 0,    ///< by `kestrel_quit`, or as the toolkit's application object quits
  KESTREL_RUN_CLOSED = 1,  ///< the window is no longer visible, or gone
  KESTREL_RUN_TIMED_OUT = 2
};

/// Processes events until `kestrel_quit`, for at most that many milliseconds (-1: no limit), and until the
/// window of `window` is closed: an object with a property Visible, such as "ImageProcessing" or
/// "ImageBrowser". Without such an object (null), until the last window of the program is closed. `reason`
/// may be null. Error 5 on a headless thread, which has no events. Can be called within a handler.
KESTREL_API kestrel_status kestrel_run(kestrel_object* window, int32_t milliseconds, int32_t* reason);

/// Ends the innermost `kestrel_run` of this thread. Error 5 if there is none.
KESTREL_API kestrel_status kestrel_quit(void);

// -- Objects ----------------------------------------------------------------------------------------------

/// Makes an object of a class, such as "ImageProcessing", "ImageBrowser", "ImgX" or "IImageEvents". The
/// caller releases it; an object with a window ends with its last handle.
KESTREL_API kestrel_status kestrel_create(const char* class_name, kestrel_object** object);

/// Makes an "ImageProcessingCtl" or "ImageBrowserCtl" as a widget for a host's window. Desktop only.
///
/// `parent` is a `QWidget*`, or null. `widget` receives the `QWidget*`, which is hidden until the host shows
/// it and belongs to the parent or, without one, to the host. `window`, if not null, receives the native
/// window's number for a host with another toolkit. The host may destroy the widget, or its parent, at any
/// time: the object is then gone. Releasing the object does not destroy the widget; see `kestrel_unembed`.
KESTREL_API kestrel_status kestrel_embed(const char* class_name, void* parent, kestrel_object** object,
                                         void** widget, uint64_t* window);

/// Destroys the widget that was made with this object. Error 5 for an object of another origin.
KESTREL_API kestrel_status kestrel_unembed(kestrel_object* object);

/// A further handle's worth of ownership: each `kestrel_retain` needs a `kestrel_release`.
KESTREL_API kestrel_status kestrel_retain(kestrel_object* object);

/// Gives a handle up. On another thread than the object's, it is released there when that thread processes
/// events or calls a function of the library. Null is allowed.
KESTREL_API kestrel_status kestrel_release(kestrel_object* object);

/// Whether two handles are of one object; `same` receives 1 or 0.
KESTREL_API kestrel_status kestrel_is_same(kestrel_object* object, kestrel_object* other, int32_t* same);

// -- Calls ------------------------------------------------------------------------------------------------

/// The number of a member, which identifies it in its class in all versions; 0 is the default member.
KESTREL_API kestrel_status kestrel_find_member(kestrel_object* object, const char* name, int32_t* member);

/// Reads a property, or calls a method without arguments. An object is a new handle, to be released.
KESTREL_API kestrel_status kestrel_get(kestrel_object* object, const char* name, kestrel_value* result);

/// Assigns to a property, a value or an object.
KESTREL_API kestrel_status kestrel_set(kestrel_object* object, const char* name, const kestrel_value* value);

/// Calls a method, or reads a property with arguments. `names` is null, or has a row for each argument: null
/// for a positional one, which come first, or the argument's name. In-out arguments are written back, after
/// their old value was cleared; the others are unchanged. `result` may be null.
KESTREL_API kestrel_status kestrel_call(kestrel_object* object, const char* name, kestrel_value* arguments,
                                        int32_t count, const char* const* names, kestrel_value* result);

enum {
  KESTREL_GET = 0,  ///< calls a method or reads a property
  KESTREL_SET = 1   ///< assigns to a property; the value is the last positional argument
};

/// The same for a member by its number, which saves the search for its name.
KESTREL_API kestrel_status kestrel_invoke(kestrel_object* object, int32_t member, int32_t use,
                                          kestrel_value* arguments, int32_t count, const char* const* names,
                                          kestrel_value* result);

/// The next element of a collection. `position` begins with 0 and advances; after the last element it is -1
/// and `element` is Empty. Elements may be added and removed meanwhile. Error 438 for an object that is no
/// collection.
KESTREL_API kestrel_status kestrel_next(kestrel_object* collection, int32_t* position,
                                        kestrel_value* element);

// -- Events -----------------------------------------------------------------------------------------------

/// A handler of an event. The arguments are the library's and valid until it returns; for an argument that is
/// in-out it may write a value, with `kestrel_value_set_string` for a text.
///
/// Returns KESTREL_OK, or the number of an error that is raised in the member that raised the event, with the
/// texts of a `kestrel_set_error` before. Whether that member passes it on or reports it to the user is a
/// matter of the member: a binding that raises errors of its handlers keeps them itself.
///
/// A handler may do all that is possible outside: disconnect itself or others, release and end the object.
typedef kestrel_status (*kestrel_handler)(void* user, kestrel_value* arguments, int32_t count);

/// A connected handler. Not a pointer to memory.
typedef struct kestrel_connection kestrel_connection;

/// Connects a handler to an event; handlers are called in the order in which they were connected. `user` is
/// passed to it, and to `release_user` (which may be null) on this thread once the handler will not be called
/// again. The connection does not keep the object alive.
KESTREL_API kestrel_status kestrel_connect(kestrel_object* object, const char* event, kestrel_handler handler,
                                           void* user, void (*release_user)(void* user),
                                           kestrel_connection** connection);

/// Ends a connection; the handler is not called again. To be called for each one, even if the object is gone;
/// on another thread as with `kestrel_release`. Null is allowed.
KESTREL_API kestrel_status kestrel_disconnect(kestrel_connection* connection);

// -- Pictures ---------------------------------------------------------------------------------------------

enum {
  KESTREL_RGBA = 5  ///< 8 bits each of red, green, blue and alpha, in that order; alpha is not multiplied in
};

typedef struct kestrel_pixels {
  const uint8_t* data;  ///< of the top row
  size_t stride;        ///< bytes from row to row
  int32_t width;
  int32_t height;
  int32_t format;  ///< KESTREL_RGBA
  int32_t reserved;
} kestrel_pixels;

/// Keeps the pixels of a picture. Not a pointer to memory.
typedef struct kestrel_pixel_lock kestrel_pixel_lock;

/// The pixels of a "Picture", without a copy and never to be written. They are valid until
/// `kestrel_unlock_pixels`, also after the handle was released and after `kestrel_stop`. Error 13 for an
/// object of another class.
KESTREL_API kestrel_status kestrel_lock_pixels(kestrel_object* picture, kestrel_pixels* pixels,
                                               kestrel_pixel_lock** lock);

/// Can be called on any thread. Null is allowed.
KESTREL_API kestrel_status kestrel_unlock_pixels(kestrel_pixel_lock* lock);

/// Makes a "Picture" of a copy of the pixels, as members take it that load one.
KESTREL_API kestrel_status kestrel_create_picture(const kestrel_pixels* pixels, kestrel_object** picture);

// -- The interface as data --------------------------------------------------------------------------------

// All descriptions are constant and valid as long as the library is loaded. They can be read on any thread.

typedef struct kestrel_class kestrel_class;
typedef struct kestrel_enumeration kestrel_enumeration;

/// What an argument or a result is.
enum {
  KESTREL_KIND_VOID = 0,
  KESTREL_KIND_BOOLEAN = 1,
  KESTREL_KIND_BYTE = 2,
  KESTREL_KIND_INT16 = 3,
  KESTREL_KIND_INT32 = 4,
  KESTREL_KIND_FLOAT = 5,
  KESTREL_KIND_DOUBLE = 6,
  KESTREL_KIND_STRING = 7,
  KESTREL_KIND_COLOR = 8,   ///< a 32-bit number
  KESTREL_KIND_WINDOW = 9,  ///< the number of a window, as a 32-bit number or a double
  KESTREL_KIND_ENUMERATION = 10,
  KESTREL_KIND_OBJECT = 11,
  KESTREL_KIND_VARIANT = 12
};

typedef struct kestrel_parameter {
  const char* name;
  int32_t kind;
  int32_t in_out;               ///< 1: written back
  int32_t nullable;             ///< 1: an object that may be Nothing
  int32_t optional;             ///< 1: may be omitted
  const char* type_name;        ///< of the class or the enumeration; else null
  kestrel_value default_value;  ///< of an optional argument; not to be cleared
} kestrel_parameter;

typedef struct kestrel_member {
  const char* name;
  const char* help;
  int32_t number;     ///< see `kestrel_invoke`
  int32_t is_method;  ///< 0: a property
  int32_t can_get;    ///< of a method: 1
  int32_t can_set;    ///< of a method: 0
  int32_t parameter_count;
  int32_t result_kind;  ///< KESTREL_KIND_...; of a property that cannot be read, that of the assigned value
  const char* result_type_name;
  const kestrel_parameter* const* parameters;
} kestrel_member;

typedef struct kestrel_event {
  const char* name;
  const char* help;
  int32_t number;
  int32_t parameter_count;
  const kestrel_parameter* const* parameters;
} kestrel_event;

struct kestrel_class {
  const char* name;
  const char* help;
  int32_t can_create;     ///< 1: by `kestrel_create`
  int32_t is_collection;  ///< 1: `kestrel_next` enumerates it
  int32_t member_count;
  int32_t event_count;
  const kestrel_member* const* members;
  const kestrel_event* const* events;
};

typedef struct kestrel_constant {
  const char* name;
  int32_t value;
} kestrel_constant;

struct kestrel_enumeration {
  const char* name;
  const char* help;
  int32_t constant_count;
  const kestrel_constant* const* constants;
};

/// All classes, and all enumerations, in the order of their names.
KESTREL_API kestrel_status kestrel_classes(const kestrel_class* const** classes, int32_t* count);
KESTREL_API kestrel_status kestrel_enumerations(const kestrel_enumeration* const** enumerations,
                                                int32_t* count);

/// The class of an object. It is known as long as the handle, even if the object is gone.
KESTREL_API kestrel_status kestrel_class_of(kestrel_object* object, const kestrel_class** description);

#ifdef __cplusplus
}
#endif

#endif
