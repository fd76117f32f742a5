// kestrel_form_table OUTPUT.cpp FUNCTION FORM.ui...
//
// Writes a source file with a function that returns the names, classes and stored values of the controls of
// each form; see platform/headless/FormDescription.h.

#include <QFile>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Xml.h"

namespace kestrel::tools {
namespace {

/// Maps a widget class to the class of the control.
struct KindOfWidget {
  std::string_view widget;
  std::string_view kind;
};
constexpr KindOfWidget kKinds[] = {
    {"QLineEdit", "TextBox"},
    {"QLabel", "Label"},
    {"QCheckBox", "CheckBox"},
    {"QRadioButton", "OptionButton"},
    {"QComboBox", "ComboBox"},
    {"QSlider", "Slider"},
    {"QTabBar", "TabStrip"},
    {"QPushButton", "CommandButton"},
    {"QToolButton", "CommandButton"},
    {"PlacementButton", "CommandButton"},
    {"FrameWidget", "Frame"},
    {"PictureWidget", "PictureBox"},
    {"ColorPickerWidget", "ColorPicker"},
    {"FormHeaderWidget", "FormHeader"},
    {"SplitPanelWidget", "SplitPanel"},
    {"PreviewWidget", "Preview"},
    {"EditorWidget", "Editor"},
    {"BrowserWidget", "Browser"},
};

/// Empty for a plain container. The class of a promoted widget may be in a namespace.
std::string_view kindOf(std::string_view widgetClass) {
  if (const std::size_t scope = widgetClass.rfind("::"); scope != std::string_view::npos) {
    widgetClass.remove_prefix(scope + 2);
  }
  for (const auto& [widget, kind] : kKinds) {
    if (widgetClass == widget) return kind;
  }
  return {};
}

std::optional<std::string> property(const XmlElement& owner, std::string_view name) {
  for (const XmlElement& candidate : owner.children) {
    if (candidate.name != "property" || candidate.attribute("name") != name || candidate.children.empty())
      continue;
    return candidate.children.front().text;
  }
  return std::nullopt;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n') {
      result += "\\n";
    } else {
      if (c == '"' || c == '\\') result += '\\';
      result += c;
    }
  }
  return result + '"';
}

std::string flag(const XmlElement& widget, std::string_view name, bool initial) {
  const auto value = property(widget, name);
  return value.value_or(initial ? "true" : "false") == "true" ? "true" : "false";
}

std::string number(const XmlElement& widget, std::string_view name, int initial) {
  const auto value = property(widget, name);
  return std::to_string(value ? std::stoi(*value) : initial);
}

class Writer {
 public:
  explicit Writer(std::ostream& out) : out_(out) {}

  void form(const XmlElement& ui) {
    const XmlElement* root = ui.child("widget");
    if (!root) throw std::runtime_error("there is no widget in it");
    out_ << "      {.name = " << quoted(root->attribute("name"))
         << ", .caption = " << quoted(property(*root, "windowTitle").value_or(""))
         << ",\n       .place = " << place(*root) << ",\n       .controls = {\n";
    count_ = 0;
    contents(*root, -1);
    out_ << "       }},\n";
  }

 private:
  /// The geometry of a widget; all 0 if its layout sets it.
  static std::string place(const XmlElement& widget) {
    std::string result;
    for (const XmlElement& candidate : widget.children) {
      if (candidate.name != "property" || candidate.attribute("name") != "geometry") continue;
      for (const XmlElement& side : candidate.children.front().children) {
        result += (result.empty() ? "" : ", ") + side.text;
      }
    }
    return "{" + result + "}";
  }

  static std::string caption(const XmlElement& widget) {
    for (const char* name : {"text", "title", "enhancedCaption"}) {
      if (const auto text = property(widget, name)) return *text;
    }
    return {};
  }

  // Layouts and their items are between a widget and its children.
  void contents(const XmlElement& parent, int parentNumber) {
    for (const XmlElement& child : parent.children) {
      if (child.name == "widget") {
        const int number = count_++;
        control(child, parentNumber);
        contents(child, number);
      } else if (child.name == "layout" || child.name == "item") {
        contents(child, parentNumber);
      }
    }
  }

  void control(const XmlElement& widget, int parentNumber) {
    const std::string_view kind = kindOf(widget.attribute("class"));
    const std::string index = property(widget, "index").value_or("-1");
    std::string name = widget.attribute("name");
    // Object names are unique on a form, so elements of a control array have their index appended to the
    // name.
    if (const std::string suffix = "_" + index; name.ends_with(suffix))
      name.resize(name.size() - suffix.size());
    out_ << "           {.kind = ControlKind::k" << (kind.empty() ? "Container" : kind)
         << ", .parent = " << parentNumber << ", .name = " << quoted(name) << ", .index = " << index
         << ",\n            .text = " << quoted(caption(widget))
         << ", .tag = " << quoted(property(widget, "Tag").value_or("")) << ", .place = " << place(widget)
         << ",\n            .enabled = " << flag(widget, "enabled", true)
         << ", .visible = " << flag(widget, "visible", true)
         << ", .checked = " << flag(widget, "checked", false)
         << ", .minimum = " << number(widget, "minimum", 0)
         << ", .maximum = " << number(widget, "maximum", 99) << ", .value = " << number(widget, "value", 0)
         << ",\n            .items = {" << joined(items(widget), quoted) << "}, .itemData = {"
         << joined(list(widget, "itemData"), [](const std::string& text) { return text; })
         << "}, .current = " << number(widget, "currentIndex", 0) << ", .stored = {" << stored(widget)
         << "}},\n";
  }

  /// The property bag of our own controls: dynamic properties, which the widget class does not have.
  static std::string stored(const XmlElement& widget) {
    std::string result;
    for (const XmlElement& candidate : widget.children) {
      if (candidate.name != "property" || candidate.attribute("stdset") != "0") continue;
      const XmlElement* value = candidate.child("bool");
      if (value) result += "{" + quoted(candidate.attribute("name")) + ", " + value->text + "}, ";
    }
    return result;
  }

  /// The lines of a list box are items, the captions of tabs a property.
  static std::vector<std::string> items(const XmlElement& widget) {
    std::vector<std::string> result = list(widget, "tabs");
    for (const XmlElement& child : widget.children) {
      if (child.name == "item") result.push_back(property(child, "text").value_or(""));
    }
    return result;
  }

  static std::vector<std::string> list(const XmlElement& widget, std::string_view name) {
    std::vector<std::string> result;
    for (const XmlElement& candidate : widget.children) {
      if (candidate.name != "property" || candidate.attribute("name") != name) continue;
      for (const XmlElement& line : candidate.children.front().children) result.push_back(line.text);
    }
    return result;
  }

  template <typename Written>
  static std::string joined(const std::vector<std::string>& parts, Written written) {
    std::string result;
    for (const std::string& part : parts) result += (result.empty() ? "" : ", ") + written(part);
    return result;
  }

  std::ostream& out_;
  int count_ = 0;
};

QByteArray contentsOf(const std::string& filename) {
  QFile file(QString::fromStdString(filename));
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("it cannot be read");
  return file.readAll();
}

void write(const std::string& output, const std::string& function, const std::vector<std::string>& forms) {
  std::ostringstream out;
  out << "#include \"platform/headless/FormDescription.h\"\n\nnamespace kestrel::headless {\n\n"
      << "const std::vector<FormDescription>& " << function << "() {\n"
      << "  static const std::vector<FormDescription> table = {\n";
  Writer writer(out);
  for (const std::string& form : forms) {
    try {
      writer.form(readXml(contentsOf(form)));
    } catch (const std::exception& error) {
      throw std::runtime_error(form + ": " + error.what());
    }
  }
  out << "  };\n  return table;\n}\n\n}  // namespace kestrel::headless\n";

  std::ofstream file(output, std::ios::binary);
  file << out.str();
  if (!file.flush()) throw std::runtime_error(output + ": it cannot be written");
}

}  // namespace
}  // namespace kestrel::tools

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: kestrel_form_table OUTPUT.cpp FUNCTION FORM.ui...\n";
    return EXIT_FAILURE;
  }
  try {
    kestrel::tools::write(argv[1], argv[2], {argv + 3, argv + argc});
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
