#include <cstdint>
#include <string>
#include <tuple>

#include "host/dispatch/Elements.h"
#include "host/dispatch/Fields.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kCommandsMembers{
    ReadOnly("Count", 1, &Commands::Count, "The number of elements."),
    ItemOf<Commands>("The element of a position, counted from 1, or of a name."),
    ReadOnly("HotKeyOptions", 2, &Commands::HotKeyOptions, "Options of all hot keys."),
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
    ReadOnly("HotKeys", 12, &Command::HotKeys, "The hot keys that invoke it."),
    ReadOnly("Bar", 13, &Command::Bar,
             "The bar of a menu command. Raises error 5 for any other type of command."),
    ReadOnly("Items", 14, &Command::Items,
             "The lines of a combo or list command. Raises error 5 for any other type of command."),
    ReadOnly("SelectedItem", 15, &Command::SelectedItem,
             "The line of a list command that was chosen last. Raises error 91 if there is none."),
};
constexpr ClassDescription kCommand = MakeClass<Command, kCommandMembers>(
    {.name = "Command", .help = "An action of the user interface, invoked by menu, bar or hot key."});

// -- Hot keys ---------------------------------------------------------------------------------------------

constexpr std::tuple kHotKeyOptionsMembers{
    Property("AllowUnmodified", 1, &HotKeyOptions::AllowUnmodified, &HotKeyOptions::AllowUnmodified,
             "1 enables hot keys without Ctrl or Alt, 0 disables them."),
};
constexpr ClassDescription kHotKeyOptions = MakeClass<HotKeyOptions, kHotKeyOptionsMembers>(
    {.name = "HotKeyOptions", .help = "Options of all hot keys."});

constexpr std::tuple kHotKeysMembers{
    ItemOf<HotKeys>("The hot key of a position, counted from 1."),
    ReadOnly("Count", 1, &HotKeys::Count, "The number of hot keys."),
};
constexpr ClassDescription kHotKeys =
    MakeClass<HotKeys, kHotKeysMembers>({.name = "HotKeys", .help = "The hot keys of a command."});

constexpr std::tuple kHotKeyMembers{
    ReadOnly("Shift", 1, &HotKey::Shift, "The modifiers: the sum of 1 Shift, 2 Ctrl, 4 Alt."),
    ReadOnly("KeyCode", 2, &HotKey::KeyCode, "The virtual key number, such as 65 for A and 112 for F1."),
    Method("Remove", 3, &HotKey::Remove,
           "Removes it from its command. The object does not exist afterwards."),
};
constexpr ClassDescription kHotKey = MakeClass<HotKey, kHotKeyMembers>(
    {.name = "HotKey", .help = "A key that invokes a command, with its modifiers."});

HotKey* FindHotKey(HotKeys& keys, const std::string& key) {
  for (std::int32_t i = 1; i <= keys.Count(); ++i) {
    if (HotKey& found = keys.Item(i); Locate<HotKey>::Key(found) == key) return &found;
  }
  return nullptr;
}

// -- Lines ------------------------------------------------------------------------------------------------

constexpr std::tuple kCommandItemsMembers{
    ItemOf<CommandItems>("The line of a position, counted from 1."),
    ReadOnly("Count", 1, &CommandItems::Count, "The number of lines."),
    Method("Add", 2, &CommandItems::Add, {"Text", {"Key", ""}}, "Adds a line at the end."),
    Method("Clear", 3, &CommandItems::Clear, "Removes all lines."),
};
constexpr ClassDescription kCommandItems = MakeClass<CommandItems, kCommandItemsMembers>(
    {.name = "CommandItems", .help = "The lines of a combo or list command."});

constexpr std::tuple kCommandItemMembers{
    ReadOnly("Text", 1, &FieldOf<&CommandItem::Text>, "The text of the line."),
    ReadOnly("Key", 2, &FieldOf<&CommandItem::Key>, "The key that the program gave the line."),
};
constexpr ClassDescription kCommandItem = MakeClass<CommandItem, kCommandItemMembers>(
    {.name = "CommandItem", .help = "A copy of one line of a combo or list command."});

}  // namespace

template <>
const ClassDescription& Describe<Commands>() {
  return kCommands;
}
template <>
const ClassDescription& Describe<Command>() {
  return kCommand;
}
template <>
const ClassDescription& Describe<HotKeyOptions>() {
  return kHotKeyOptions;
}
template <>
const ClassDescription& Describe<HotKeys>() {
  return kHotKeys;
}
template <>
const ClassDescription& Describe<HotKey>() {
  return kHotKey;
}
template <>
const ClassDescription& Describe<CommandItems>() {
  return kCommandItems;
}
template <>
const ClassDescription& Describe<CommandItem>() {
  return kCommandItem;
}

// Hot keys are only ever removed. So an address among the present ones is that of the same hot key.

std::string Locate<HotKey>::Key(const HotKey& hotKey) {
  return std::to_string(reinterpret_cast<std::uintptr_t>(&hotKey));
}

HotKey* Locate<HotKey>::Find(HotKeys& keys, const std::string& key) { return FindHotKey(keys, key); }

HotKey* Locate<HotKey>::Find(Moorage& suite, const std::string& key) {
  Commands& commands = suite.Commands();
  for (std::int32_t i = 1; i <= commands.Count(); ++i) {
    if (HotKey* const found = FindHotKey(commands.Item(i).HotKeys(), key)) return found;
  }
  return nullptr;
}

}  // namespace kestrel::dispatch
