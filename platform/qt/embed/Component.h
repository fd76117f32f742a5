#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <string>

namespace kestrel {
class Platform;
class RecoveryStore;
}  // namespace kestrel

namespace kestrel::qt {

class HostServices;
struct SiteServices;

/// The component inside a host program. A host creates one on its main thread, after its application object
/// and before any editor, and keeps it until after the last editor. All Component objects share one state.
/// The desktop's platform and the shared services are created with the first component and end with the
/// host's application object. A component that outlives it serves the next application object.
class Component {
 public:
  /// Uses the settings of the components that live already. Without them settings, recent files, window
  /// positions and pictures kept for recovery are those that all programs of the user with this component
  /// share.
  Component();
  /// Uses settings, recent files, window positions and a place for recovery that belong to this name; other
  /// programs with the same name share them. An empty name means the ones shared by all. At most 64
  /// letters, digits, points, "-" and "_"; usually the host's name or its reversed domain name. Raises
  /// RuntimeError 5 for any other name, and if a living component uses another one.
  explicit Component(const std::string& settingsName);
  /// The services set by this component end.
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// The host's own way with messages and errors, for all editors and browsers, instead of one set before.
  /// Null: the component's way.
  void setServices(std::shared_ptr<HostServices> services);

  /// The language of the component's texts in this application: a locale such as "de" or "ar_EG". At first it
  /// is that of the toolkit, `QLocale()`; "en" without a catalog for it. Open windows change their texts when
  /// their events are processed next, and with a language written from right to left the application's layout
  /// direction changes, unless the host has set one. The toolkit's own texts, such as those of standard
  /// buttons, are the host's concern.
  QString language();
  void setLanguage(const QString& locale);

  /// For the controls on the sites of editors.
  const SiteServices& siteServices();
  Platform& platform();
  /// Null if the user has no place for it.
  RecoveryStore* recoveryStore();

 private:
  struct Inside;
  /// That of the present application object.
  Inside& inside();

  /// None: that of the others.
  std::optional<std::string> settingsName_;
  std::shared_ptr<HostServices> services_;
  std::shared_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
