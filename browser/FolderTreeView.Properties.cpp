#include <string>

#include "FolderTreeView.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr char kInvalidValue[] = "Invalid property value";

}  // namespace

void FolderTreeView::UserControl_InitProperties() {
  try {
    pActAsBrowseDialog = true;
    pIncludeDesktop = true;
    pIncludeMyDocuments = true;
    pIncludeMyComputer = true;
    pAutoSelect = true;
    // The tree starts with the font of its container.
    Refresh();
  } catch (...) {
    QDK_TRAILER(UserControl_InitProperties, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void FolderTreeView::UserControl_ReadProperties(const PropertyBag& PropBag) {
  try {
    pAutoSelect = PropBag.ReadProperty("AutoSelect", true).ToBoolean();
    pIncludeMyComputer = PropBag.ReadProperty("IncludeMyComputer", true).ToBoolean();
    pIncludeMyDocuments = PropBag.ReadProperty("IncludeMyDocuments", true).ToBoolean();
    pIncludeDesktop = PropBag.ReadProperty("IncludeDesktop", true).ToBoolean();
    tvwFolders.Font(PropBag.ReadProperty("Font", tvwFolders.Font()).ToString());
    tvwFolders.BorderStyle(PropBag.ReadProperty("BorderStyle", kTreeBorderStyle).ToInt32());
    tvwFolders.Checkboxes(PropBag.ReadProperty("Checkboxes", false).ToBoolean());
    tvwFolders.Enabled(PropBag.ReadProperty("Enabled", true).ToBoolean());
    tvwFolders.HideSelection(PropBag.ReadProperty("HideSelection", false).ToBoolean());
    tvwFolders.Indentation(ToSingle(PropBag.ReadProperty("Indentation", kTreeIndentation).ToDouble()));
    tvwFolders.LineStyle(PropBag.ReadProperty("LineStyle", kTreeLineStyle).ToInt32());
    tvwFolders.SingleSel(PropBag.ReadProperty("SingleSel", false).ToBoolean());
    tvwFolders.Style(PropBag.ReadProperty("Style", kTreeStyle).ToInt32());
    pActAsBrowseDialog = PropBag.ReadProperty("ActAsBrowseDialog", true).ToBoolean();
    Refresh();
  } catch (...) {
    QDK_TRAILER(UserControl_ReadProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void FolderTreeView::UserControl_WriteProperties(PropertyBag& PropBag) {
  try {
    PropBag.WriteProperty("AutoSelect", pAutoSelect, true);
    PropBag.WriteProperty("IncludeMyComputer", pIncludeMyComputer, true);
    PropBag.WriteProperty("IncludeMyDocuments", pIncludeMyDocuments, true);
    PropBag.WriteProperty("IncludeDesktop", pIncludeDesktop, true);
    PropBag.WriteProperty("Font", tvwFolders.Font(), "");
    PropBag.WriteProperty("BorderStyle", tvwFolders.BorderStyle(), kTreeBorderStyle);
    PropBag.WriteProperty("Checkboxes", tvwFolders.Checkboxes(), false);
    PropBag.WriteProperty("Enabled", tvwFolders.Enabled(), true);
    PropBag.WriteProperty("HideSelection", tvwFolders.HideSelection(), false);
    PropBag.WriteProperty("Indentation", tvwFolders.Indentation(), kTreeIndentation);
    PropBag.WriteProperty("LineStyle", tvwFolders.LineStyle(), kTreeLineStyle);
    PropBag.WriteProperty("SingleSel", tvwFolders.SingleSel(), false);
    PropBag.WriteProperty("Style", tvwFolders.Style(), kTreeStyle);
    PropBag.WriteProperty("ActAsBrowseDialog", pActAsBrowseDialog, true);
  } catch (...) {
    QDK_TRAILER(UserControl_WriteProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void FolderTreeView::AutoSelect(bool Value) {
  try {
    if (Value == pAutoSelect) return;
    pAutoSelect = Value;
    UserControl.PropertyChanged("AutoSelect");
  } catch (...) {
    QDK_TRAILER(AutoSelect, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void FolderTreeView::IncludeDesktop(bool Value) { zInclude(pIncludeDesktop, Value, "IncludeDesktop"); }

void FolderTreeView::IncludeMyDocuments(bool Value) {
  zInclude(pIncludeMyDocuments, Value, "IncludeMyDocuments");
}

void FolderTreeView::IncludeMyComputer(bool Value) {
  zInclude(pIncludeMyComputer, Value, "IncludeMyComputer");
}

void FolderTreeView::ActAsBrowseDialog(bool Value) {
  zInclude(pActAsBrowseDialog, Value, "ActAsBrowseDialog");
}

void FolderTreeView::zInclude(bool& Field, bool Value, const std::string& Name) {
  try {
    if (Value == Field) return;
    Field = Value;
    UserControl.PropertyChanged(Name);
    Refresh();
  } catch (...) {
    QDK_TRAILER(zInclude, QDK_PARAMETERS(Field, Value, Name), QDK_LOCALS());
  }
}

/// Passes a value on to the tree, unless it has it.
template <typename Type, typename Write>
void FolderTreeView::zPass(const Type& Present, const Type& Value, const std::string& Name, Write Set) {
  try {
    if (Value == Present) return;
    Set();
    UserControl.PropertyChanged(Name);
  } catch (...) {
    QDK_TRAILER(zPass, QDK_PARAMETERS(Present, Value, Name), QDK_LOCALS());
  }
}

void FolderTreeView::Checkboxes(bool Value) {
  zPass<bool>(tvwFolders.Checkboxes(), Value, "Checkboxes", [&] { tvwFolders.Checkboxes(Value); });
}

void FolderTreeView::Enabled(bool Value) {
  zPass<bool>(tvwFolders.Enabled(), Value, "Enabled", [&] { tvwFolders.Enabled(Value); });
}

void FolderTreeView::HideSelection(bool Value) {
  zPass<bool>(tvwFolders.HideSelection(), Value, "HideSelection", [&] { tvwFolders.HideSelection(Value); });
}

void FolderTreeView::Indentation(float Value) {
  zPass<float>(tvwFolders.Indentation(), Value, "Indentation", [&] { tvwFolders.Indentation(Value); });
}

void FolderTreeView::SingleSel(bool Value) {
  zPass<bool>(tvwFolders.SingleSel(), Value, "SingleSel", [&] { tvwFolders.SingleSel(Value); });
}

void FolderTreeView::Font(const std::string& Value) {
  if (Value.empty()) zRaiseError(*this, err::kInvalidPropertyValue, kInvalidValue);
  zPass<std::string>(tvwFolders.Font(), Value, "Font", [&] { tvwFolders.Font(Value); });
}

void FolderTreeView::BorderStyle(std::int32_t Value) {
  zCheckRange(Value, kLargestBorderStyle);
  zPass<std::int32_t>(tvwFolders.BorderStyle(), Value, "BorderStyle", [&] { tvwFolders.BorderStyle(Value); });
}

void FolderTreeView::LineStyle(std::int32_t Value) {
  zCheckRange(Value, kLargestLineStyle);
  zPass<std::int32_t>(tvwFolders.LineStyle(), Value, "LineStyle", [&] { tvwFolders.LineStyle(Value); });
}

void FolderTreeView::Style(std::int32_t Value) {
  zCheckRange(Value, kLargestTreeStyle);
  zPass<std::int32_t>(tvwFolders.Style(), Value, "Style", [&] { tvwFolders.Style(Value); });
}

void FolderTreeView::zCheckRange(std::int32_t Value, std::int32_t Largest) const {
  if (Value < 0 || Value > Largest) zRaiseError(*this, err::kInvalidPropertyValue, kInvalidValue);
}

void FolderTreeView::zRaiseError(const Object& Source, std::int32_t Number, std::string Description,
                                 const std::vector<std::string>& Parameters) {
  if (Number == 0) throw;
  // The last first: "%12" must not be taken for "%1" with a 2 behind it.
  for (std::size_t n = Parameters.size(); n > 0; --n) {
    const std::string place = "%" + std::to_string(n);
    for (std::size_t at = 0; (at = Description.find(place, at)) != std::string::npos;) {
      Description.replace(at, place.size(), Parameters[n - 1]);
      at += Parameters[n - 1].size();
    }
  }
  throw RuntimeError(Number, Description, modProcessing::Platform().App().Title() + "." + Source.TypeName());
}

}  // namespace kestrel
