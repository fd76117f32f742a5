#include "imaging/contract/Moorage.h"

#include <tuple>

#include "host/dispatch/ControlRows.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

constexpr auto kMoorageMembers = std::tuple_cat(
    std::tuple{
        ReadOnly("Commands", 1, &Moorage::Commands, "The commands of menus, bars and hot keys."),
        ReadOnly("CommandBars", 2, &Moorage::CommandBars, "The menu bar, tool bars and status bar."),
        ReadOnly("DockWindows", 3, &Moorage::DockWindows, "The dock windows."),
        ReadOnly("DockFunctions", 4, &Moorage::DockFunctions,
                 "Operations of the docking suite across its parts."),
        ReadOnly("ClientArea", 5, &Moorage::ClientArea,
                 "The area that the bars and docked windows leave free, in pixels of the control."),
        WriteOnly("Redraw", 6, &Moorage::Redraw, "False suspends repainting of the bars, True resumes."),
        Method("SetComboText", 7, &Moorage::SetComboText, {"Command", "Text"},
               "Sets the text of a combo command. Does not raise CommandChange."),
        Method("ShowPopup", 8, &Moorage::ShowPopup, {"Command"},
               "Opens the menu of a command at the pointer and returns when it is closed."),
        Method("StatusPanel", 9, &Moorage::StatusPanel, {"Name"},
               "The status panel of that name. Raises error 5 if there is none."),
    },
    kControlRows);
constexpr std::tuple kMoorageEvents{
    EventOf("CommandClick", 1, &Moorage::CommandClick, {"Command"},
            "The user chose a command, by menu, bar or hot key."),
    EventOf("CommandChange", 2, &Moorage::CommandChange, {"Command", "Combo", "CancelDefault"},
            "The user typed or chose a text in a combo. Canceling it restores the text before."),
    EventOf("CommandHighlight", 3, &Moorage::CommandHighlight, {"Command", "HighlightState"},
            "The pointer is over a command (1) or has left it (0)."),
    EventOf("CommandHotKeyPress", 4, &Moorage::CommandHotKeyPress, {"Command", "HotKey", "CancelDefault"},
            "A hot key was pressed. Canceling it does not invoke the command."),
    EventOf("CommandBarHiding", 5, &Moorage::CommandBarHiding, {"CommandBar", "Reason", "CancelDefault"},
            "A bar is about to be hidden, by a program (0) or the user (1)."),
    EventOf("CommandBarShowing", 6, &Moorage::CommandBarShowing, {"CommandBar", "Reason", "CancelDefault"},
            "A bar is about to be shown, by a program (0) or the user (1)."),
    EventOf("DockWindowHiding", 7, &Moorage::DockWindowHiding, {"DockWindow", "Reason", "CancelDefault"},
            "A dock window is about to be hidden, by a program (0) or the user (1)."),
    EventOf("DockWindowShowing", 8, &Moorage::DockWindowShowing, {"DockWindow", "Reason", "CancelDefault"},
            "A dock window is about to be shown, by a program (0) or the user (1)."),
    EventOf("ClientAreaChanged", 9, &Moorage::ClientAreaChanged, "ClientArea has changed."),
};
constexpr ClassDescription kMoorage = MakeClass<Moorage, kMoorageMembers, kMoorageEvents>(
    {.name = "Moorage",
     .help = "The docking suite: command bars, menus, status panels, dock windows, hot keys."});

constexpr std::tuple kDockFunctionsMembers{
    Method("SetChecked", 1, &DockFunctions::SetChecked, {"Command", "Pressed"},
           "Sets the pressed state of a command on all bars and menus."),
    Method("AttachForm", 2, &DockFunctions::AttachForm, {"DockWindow", "Form"},
           "Shows a window inside a dock window."),
    Method("SetStyle", 3, &DockFunctions::SetStyle, {"Control", "Style"},
           "The style of the bars: 0 icons only, 1 icons left of captions, 2 icons above captions."),
};
constexpr ClassDescription kDockFunctions = MakeClass<DockFunctions, kDockFunctionsMembers>(
    {.name = "DockFunctions", .help = "Operations of the docking suite across its parts."});

constexpr std::tuple kStatusPanelMembers{
    Property("Caption", 1, &StatusPanel::Caption, &StatusPanel::Caption, "The text of the panel."),
    Property("Visible", 2, &StatusPanel::Visible, &StatusPanel::Visible, "Whether it is shown."),
    WriteOnly("ProgressMin", 3, &StatusPanel::ProgressMin, "Of a progress panel: the value of 0 percent."),
    WriteOnly("ProgressMax", 4, &StatusPanel::ProgressMax, "Of a progress panel: the value of 100 percent."),
    WriteOnly("ProgressValue", 5, &StatusPanel::ProgressValue,
              "Of a progress panel: the value that it shows."),
};
constexpr ClassDescription kStatusPanel = MakeClass<StatusPanel, kStatusPanelMembers>(
    {.name = "StatusPanel", .help = "A field of the status bar."});

constexpr std::tuple kComboMembers{
    ReadOnly("Text", 1, &Combo::Text, "The text in the box."),
};
constexpr ClassDescription kCombo = MakeClass<Combo, kComboMembers>(
    {.name = "Combo",
     .help = "The box of a combo command. It exists until the event that passed it has ended."});

}  // namespace

template <>
const ClassDescription& Describe<Moorage>() {
  return kMoorage;
}
template <>
const ClassDescription& Describe<DockFunctions>() {
  return kDockFunctions;
}
template <>
const ClassDescription& Describe<StatusPanel>() {
  return kStatusPanel;
}
template <>
const ClassDescription& Describe<Combo>() {
  return kCombo;
}

}  // namespace kestrel::dispatch
