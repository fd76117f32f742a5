#include "RunCommand.h"

#include "base/RuntimeError.h"
#include "imaging/contract/DispatchKey.h"

namespace kestrel::app {

void runCommand(Moorage& suite, const std::string& key) {
  for (std::int32_t i = 1; i <= suite.Commands().Count(); ++i) {
    Command& command = suite.Commands().Item(i);
    if (command.CommandType() != kCommandButton || DispatchKey(command.Name()) != key) continue;
    if (!command.Enabled()) {
      throw RuntimeError(err::kInvalidCall, "The command \"" + key + "\" cannot be used now.");
    }
    suite.CommandClick(command);
    return;
  }
  throw RuntimeError(err::kInvalidCall, "There is no command \"" + key + "\".");
}

}  // namespace kestrel::app
