#pragma once

#include <memory>
#include <string>

#include "Site.h"
#include "engine/imgx/ClipboardPort.h"

namespace kestrel::headless {

class FileSystem;
class Moorage;
class User;

/// Platform services for the windows on a control's surface.
struct Surroundings {
  engine::ClipboardPort& clipboard;
  const FileSystem& files;
  User& user;
};

/// The container of an editor with its two windows: "mrgUI" with the stored layout "Dialog", and "igxImage".
std::unique_ptr<Site> makeEditorSite(Desktop& desktop, Window* parent, const std::string& name, bool userMode,
                                     const Surroundings& surroundings);
/// Only the docking suite "mrgUI".
std::unique_ptr<Moorage> makeEditorSuite(Site& site, const Surroundings& surroundings);

/// The docking suite "mrgUI" of a browser, with the stored layout "Browser".
std::unique_ptr<Moorage> makeBrowserSuite(Site& site, const Surroundings& surroundings);

/// The container of a preview with its two panes "igxOriginal" and "igxPreview" and the stock picture
/// "imgPreview".
std::unique_ptr<Site> makePreviewSite(Desktop& desktop, Window* parent, const std::string& name,
                                      const Surroundings& surroundings);

/// The container of a folder tree with its tree "tvwFolders", which has the five stock pictures, the hidden
/// picture "picIcon" and the notices "fnoFolders".
std::unique_ptr<Site> makeFolderTreeSite(Desktop& desktop, Window* parent, const std::string& name,
                                         bool userMode);

/// The container of a browser with its windows: "mrgUI" with the stored layout "Browser", the split panel
/// "pnlBrowse", the folder tree "ftvBrowse" and the thumbnail view "thvBrowse".
std::unique_ptr<Site> makeBrowserSite(Desktop& desktop, Window* parent, const std::string& name,
                                      bool userMode, const Surroundings& surroundings);

}  // namespace kestrel::headless
