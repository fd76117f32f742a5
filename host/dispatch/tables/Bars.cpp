#include <tuple>

#include "host/dispatch/Elements.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kCommandBarsMembers{
    ReadOnly("Count", 1, &CommandBars::Count, "The number of elements."),
    ItemOf<CommandBars>("The element of a position, counted from 1, or of a name."),
};
constexpr ClassDescription kCommandBars = MakeClass<CommandBars, kCommandBarsMembers>(
    {.name = "CommandBars", .help = "The menu bar, tool bars and status bar."});

constexpr std::tuple kCommandBarMembers{
    ReadOnly("Name", 1, &CommandBar::Name, "The name of the bar."),
    Property("Visible", 2, &CommandBar::Visible, &CommandBar::Visible, "Whether it is shown."),
    Property("Listed", 3, &CommandBar::Listed, &CommandBar::Listed,
             "Whether the menu of bars lists it, for the user to show or hide."),
    ReadOnly("Entries", 4, &CommandBar::Entries, "The entries of the bar."),
};
constexpr ClassDescription kCommandBar = MakeClass<CommandBar, kCommandBarMembers>(
    {.name = "CommandBar", .help = "A menu bar, tool bar or status bar, or the bar inside a menu command."});

constexpr std::tuple kBarEntriesMembers{
    ItemOf<BarEntries>("The entry of a position, counted from 1, or of the command of that name."),
    ReadOnly("Count", 1, &BarEntries::Count, "The number of entries."),
};
constexpr ClassDescription kBarEntries = MakeClass<BarEntries, kBarEntriesMembers>(
    {.name = "BarEntries", .help = "The entries of a bar or a menu."});

constexpr std::tuple kBarEntryMembers{
    ReadOnly("Key", 1, &BarEntry::Key, "The name of the command that it shows."),
    Property("BeginGroup", 2, &BarEntry::BeginGroup, &BarEntry::BeginGroup,
             "Whether a separator precedes the entry."),
};
constexpr ClassDescription kBarEntry =
    MakeClass<BarEntry, kBarEntryMembers>({.name = "BarEntry", .help = "One entry of a bar or a menu."});

constexpr std::tuple kDockWindowsMembers{
    ReadOnly("Count", 1, &DockWindows::Count, "The number of elements."),
    ItemOf<DockWindows>("The element of a position, counted from 1, or of a name."),
};
constexpr ClassDescription kDockWindows =
    MakeClass<DockWindows, kDockWindowsMembers>({.name = "DockWindows", .help = "The dock windows."});

constexpr std::tuple kDockWindowMembers{
    ReadOnly("Name", 1, &DockWindow::Name, "The name of the window."),
    ReadOnly("Caption", 2, &DockWindow::Caption, "The text of its title."),
    Property("Visible", 3, &DockWindow::Visible, &DockWindow::Visible, "Whether it is shown."),
};
constexpr ClassDescription kDockWindow = MakeClass<DockWindow, kDockWindowMembers>(
    {.name = "DockWindow", .help = "A window docked at an edge, or floating."});

}  // namespace

template <>
const ClassDescription& Describe<CommandBars>() {
  return kCommandBars;
}
template <>
const ClassDescription& Describe<CommandBar>() {
  return kCommandBar;
}
template <>
const ClassDescription& Describe<BarEntries>() {
  return kBarEntries;
}
template <>
const ClassDescription& Describe<BarEntry>() {
  return kBarEntry;
}
template <>
const ClassDescription& Describe<DockWindows>() {
  return kDockWindows;
}
template <>
const ClassDescription& Describe<DockWindow>() {
  return kDockWindow;
}

}  // namespace kestrel::dispatch
