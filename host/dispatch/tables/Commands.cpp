#include <tuple>

#include "host/dispatch/Elements.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kCommandsMembers{
    ReadOnly("Count", 1, &Commands::Count, "The number of elements."),
    ItemOf<Commands>("The element of a position, counted from 1, or of a name."),
};
constexpr ClassDescription kCommands = MakeClass<Commands, kCommandsMembers>(
    {.name = "Commands", .help = "The commands of menus, bars and hot keys."});

constexpr std::tuple kCommandMembers{
    ReadOnly("Name", 1, &Command::Name, "The key of the command, as the layout spells it."),
    ReadOnly("CommandType", 2, &Command::CommandType, "0 button, 2 combo, 4 menu, 8 list, 9 panel."),
    ReadOnly("Category", 3, &Command::Category, "The category that lists it."),
    Property("Caption", 4, &Command::Caption, &Command::Caption, "The text in menus."),
    ReadOnly("ShortCaption", 5, &Command::ShortCaption, "The text on bars."),
    Property("Description", 6, &Command::Description, &Command::Description,
             "The sentence in the status line."),
    Property("ToolTip", 7, &Command::ToolTip, &Command::ToolTip, "The text of the tool tip."),
    ReadOnly("ImageName", 8, &Command::ImageName, "The name of its image; empty if it has none."),
    Property("Enabled", 9, &Command::Enabled, &Command::Enabled, "Whether it can be invoked."),
    Property("Visible", 10, &Command::Visible, &Command::Visible, "Whether menus and bars show it."),
    ReadOnly("Checked", 11, &Command::Checked, "Whether it is pressed."),
};
constexpr ClassDescription kCommand = MakeClass<Command, kCommandMembers>(
    {.name = "Command", .help = "An action of the user interface, invoked by menu, bar or hot key."});

}  // namespace

template <>
const ClassDescription& Describe<Commands>() {
  return kCommands;
}
template <>
const ClassDescription& Describe<Command>() {
  return kCommand;
}

}  // namespace kestrel::dispatch
