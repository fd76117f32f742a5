#pragma once

namespace kestrel::qt {

/// Looks for a display for the toolkit's application object, which without one would end the program.
class Display {
 public:
  Display();
  /// Ends the connection by which a display server was found. The application object is made before: a server
  /// that loses its only client can restart.
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  bool exists() const { return exists_; }

 private:
  bool answersX11();

  bool exists_ = false;
  void (*disconnect_)(void* connection) = nullptr;
  void* connection_ = nullptr;
};

}  // namespace kestrel::qt
