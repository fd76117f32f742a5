// A reporting object that writes its arguments to the file named by TEST_REPORT_FILE.
#include <cstdlib>
#include <fstream>

#include "BrindleError.h"

extern "C" {

void* brindle_error_create() {
  const char* const file = std::getenv("TEST_REPORT_FILE");
  return file == nullptr ? nullptr : new std::ofstream(file, std::ios::app);
}

int32_t brindle_error_handler(void* object, int32_t* number, const char* project, const char* module,
                              const char* procedure, const char* description, int32_t* line,
                              const char* variables, const char* version) {
  auto& file = *static_cast<std::ofstream*>(object);
  file << *number << "|" << project << "|" << module << "|" << procedure << "|" << description << "|" << *line
       << "|" << variables << "|" << version;
  return *number == 999 ? 57 : 0;
}

const char* brindle_error_action(void* object) {
  static_cast<std::ofstream*>(object)->flush();
  return "done";
}

void brindle_error_destroy(void* object) { delete static_cast<std::ofstream*>(object); }
}
