#include <tuple>

#include "host/dispatch/Table.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kMoorageMembers{
    ReadOnly("Commands", 1, &Moorage::Commands, "The commands of menus, bars and hot keys."),
    ReadOnly("CommandBars", 2, &Moorage::CommandBars, "The menu bar, tool bars and status bar."),
    ReadOnly("DockWindows", 3, &Moorage::DockWindows, "The dock windows."),
};
constexpr ClassDescription kMoorage = MakeClass<Moorage, kMoorageMembers>(
    {.name = "Moorage",
     .help = "The docking suite: command bars, menus, status panels, dock windows, hot keys."});

}  // namespace

template <>
const ClassDescription& Describe<Moorage>() {
  return kMoorage;
}

}  // namespace kestrel::dispatch
