#include "frmImageBrowser.h"

#include <utility>

#include "diagnostics/Trailer.h"
#include "imaging/contract/PropertyStage.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr char kForm[] = "frmImageBrowser";
constexpr char kDivider[] = "Divider";
/// Larger stored values are not ours.
constexpr std::int32_t kMaxDivider = 1 << 20;

/// Empty while no positions are stored.
std::string KeyOfDivider() {
  const std::string key = modProcessing::WindowPositions().RegistryKey();
  return key.empty() ? key : key + "\\" + kForm;
}

}  // namespace

frmImageBrowser::frmImageBrowser() : iForm(kForm), iSite(Bind<Site>(*iForm, "Browser")), iBrowser(iSite) {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(iForm->Load.Connect([this] { Form_Load(); }));
  keep(iForm->Activate.Connect([this] { Form_Activate(); }));
  keep(iForm->Resize.Connect([this] { Form_Resize(); }));
  keep(iForm->QueryUnload.Connect([this](bool& cancel, std::int32_t) { Form_QueryUnload(cancel); }));
  keep(iBrowser.PathChange.Connect([this](const std::string&) { Browser_PathChange(); }));
  keep(iBrowser.InvalidPathChange.Connect([this] { Browser_InvalidPathChange(); }));
  keep(iBrowser.ExitRequest.Connect([this] { Browser_ExitRequest(); }));
  // A host sets the path before it shows the window.
  dynamic_cast<PropertyStage&>(*iForm).InitializeControls();
}

frmImageBrowser::~frmImageBrowser() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(iForm->Unload());
}

void frmImageBrowser::End() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(iForm->Unload());
  iConnections.clear();
  QDK_RESUME_NEXT(iBrowser.Retire());
}

void frmImageBrowser::Form_Load() {
  try {
    if (!modProcessing::WindowPositions().RegistryKey().empty()) {
      modProcessing::WindowPositions().LoadPosition(*iForm, {});
      zLoadDivider();
    }
    zSetCaption();
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*iForm, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Form_Activate() {
  try {
    if (std::exchange(iActivated, true)) return;
    modProcessing::Platform().Screen().MousePointer(kBusyDefault);
  } catch (...) {
    QDK_TRAILER(Form_Activate, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Form_Resize() {
  try {
    if (iForm->WindowState() == kWindowMinimized) return;
    iSite.Move(0, 0, iForm->ScaleWidth(), iForm->ScaleHeight());
  } catch (...) {
    QDK_TRAILER(Form_Resize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Form_QueryUnload(bool& Cancel) {
  try {
    if (SafeToUnload) return;
    zSavePosition();
    iForm->Hide();
    Cancel = true;
    QDK_RESUME_NEXT(zSaveDivider());
  } catch (...) {
    QDK_TRAILER(Form_QueryUnload, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

/// A position that cannot be stored does not keep the window from being hidden: it would be unloaded.
void frmImageBrowser::zSavePosition() {
  try {
    modProcessing::WindowPositions().SavePosition(*iForm, {});
  } catch (...) {
    QDK_TRAILER(zSavePosition, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Browser_PathChange() {
  try {
    zSetCaption();
  } catch (...) {
    QDK_TRAILER(Browser_PathChange, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Browser_InvalidPathChange() {
  try {
    zSetCaption();
  } catch (...) {
    QDK_TRAILER(Browser_InvalidPathChange, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Browser_ExitRequest() {
  try {
    iForm->Unload();
  } catch (...) {
    QDK_TRAILER(Browser_ExitRequest, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageBrowser::Title(const std::string& Value) {
  try {
    if (Value == pTitle) return;
    pTitle = Value;
    zSetCaption();
  } catch (...) {
    QDK_TRAILER(Title, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void frmImageBrowser::zSetCaption() {
  std::string Folder, Separator;
  try {
    Separator = modProcessing::FileHelpers().PathSeparator();
    Folder = iBrowser.Path();
    if (Folder.ends_with(Separator)) Folder.resize(Folder.size() - Separator.size());
    // A drive alone has a separator too.
    if (!Folder.empty()) Folder = Separator + Folder;
    const std::size_t last = Folder.rfind(Separator);
    iForm->Caption(last == std::string::npos ? pTitle
                                             : Folder.substr(last + Separator.size()) + " - " + pTitle);
  } catch (...) {
    QDK_TRAILER(zSetCaption, QDK_PARAMETERS(), QDK_LOCALS(Folder, Separator));
  }
}

void frmImageBrowser::zLoadDivider() {
  const Variant stored =
      modProcessing::RegistryStore().ReadValue(HKEY_CURRENT_USER, KeyOfDivider(), kDivider);
  if (stored.TypeCode() != static_cast<std::int32_t>(Variant::Type::kInt32)) return;
  const std::int32_t position = stored.ToInt32();
  if (position >= 0 && position <= kMaxDivider) iBrowser.DividerPosition(position);
}

void frmImageBrowser::zSaveDivider() {
  const std::string key = KeyOfDivider();
  if (key.empty()) return;
  modProcessing::RegistryStore().WriteValue(HKEY_CURRENT_USER, key, kDivider, iBrowser.DividerPosition(),
                                            kStoreNumber);
}

std::string frmImageBrowser::qdkDumpModuleVariables() const {
  return QDK_FIELDS(SafeToUnload, iBrowser, pTitle, iActivated);
}

}  // namespace kestrel
