#include "LayoutReader.h"

#include <array>
#include <map>
#include <string>
#include <utility>

#include "ByteOrder.h"
#include "LayoutCheck.h"
#include "LayoutFormat.h"
#include "TagStream.h"
#include "WideText.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

namespace {

using namespace layout_format;
using Items = TagItem::Items;
using NamesByGuid = std::map<std::string, std::string>;

/// The items of one object, found by id and type.
class Fields {
 public:
  explicit Fields(const Items& items) : items_(items) {}

  template <typename T>
  const T* find(std::int32_t id) const {
    for (const TagItem& item : items_) {
      if (item.id != id) continue;
      if (const T* value = std::get_if<T>(&item.value)) return value;
    }
    return nullptr;
  }

  template <typename T>
  const T& get(std::int32_t id) const {
    const T* value = find<T>(id);
    if (!value) refuseLayout("a field is missing or of a wrong type");
    return *value;
  }

  /// Calls `visit` for each object with the collection's id. The objects must be in the order of their
  /// indices.
  template <typename Visit>
  void each(std::int32_t id, Visit visit) const {
    std::int32_t expected = 0;
    for (const TagItem& item : items_) {
      const Items* object = std::get_if<Items>(&item.value);
      if (!object || item.id != id) continue;
      if (item.index != expected++) refuseLayout("the objects of a collection are not in order");
      visit(Fields(*object));
    }
  }

  std::int32_t count(std::int32_t id) const {
    std::int32_t found = 0;
    each(id, [&](const Fields&) { ++found; });
    return found;
  }

  const Items& items() const { return items_; }

 private:
  const Items& items_;
};

template <typename T>
T enumerated(std::int32_t value, T last) {
  if (value < 0 || value > static_cast<std::int32_t>(last)) refuseLayout("a field has an unknown value");
  return static_cast<T>(value);
}

std::string resolve(const NamesByGuid& names, const std::string& guid) {
  const auto found = names.find(guid);
  if (found == names.end()) refuseLayout("it refers to an unknown identifier");
  return found->second;
}

void add(NamesByGuid& names, const std::string& guid, const std::string& name) {
  if (!names.emplace(guid, name).second) refuseLayout("an identifier is defined twice");
}

/// Interprets the items of a whole stream.
class Interpreter {
 public:
  explicit Interpreter(const Items& stream) : top_(stream) {}

  StoredLayout layout() {
    layout_.font = top_.get<StoredFont>(top::kFont);
    images();
    categories();
    commands();
    bars(top::kBars);
    bars(top::kStatusBars);
    panes();
    dockWindows();
    if (const std::string wrong = inconsistencyIn(layout_); !wrong.empty()) refuseLayout(wrong);
    return std::move(layout_);
  }

 private:
  void images() {
    const Fields groups(top_.get<Items>(top::kImageGroups));
    groups.each(image_group::kGroup, [this](const Fields& group) {
      if (group.get<std::int32_t>(image_group::kWidth) != 16) return;
      group.each(image_group::kImage, [this](const Fields& fields) {
        StoredImage stored;
        stored.name = fields.get<std::string>(image::kName);
        stored.transparent = fields.get<std::int32_t>(image::kTransparent);
        stored.normal = fields.get<StoredPicture>(image::kNormal);
        stored.disabled = fields.get<StoredPicture>(image::kDisabled);
        add(images_, fields.get<std::string>(image::kGuid), stored.name);
        layout_.images.push_back(std::move(stored));
      });
    });
  }

  void categories() {
    const Fields list(top_.get<Items>(top::kCategories));
    list.each(category::kCategory, [this](const Fields& fields) {
      layout_.categories.push_back(fields.get<std::string>(category::kName));
      add(categories_, fields.get<std::string>(category::kGuid), layout_.categories.back());
    });
  }

  void commands() {
    const Fields list(top_.get<Items>(top::kCommands));
    list.get<bool>(commands::kAllowUnmodified);
    if (list.get<std::int32_t>(commands::kCount) != list.count(commands::kCommand)) {
      refuseLayout("its command count is wrong");
    }
    // A menu may refer to commands after it.
    list.each(commands::kCommand, [this](const Fields& fields) {
      add(commands_, fields.get<std::string>(command::kGuid), fields.get<std::string>(command::kKey));
    });
    list.each(commands::kCommand,
              [this](const Fields& fields) { layout_.commands.push_back(command(fields)); });
    checkMenuPositions(list);
  }

  void checkMenuPositions(const Fields& list) const {
    std::vector<std::int32_t> said;
    for (const TagItem& item : list.items()) {
      const auto* place = std::get_if<std::int32_t>(&item.value);
      if (place && item.id == commands::kMenuIndex) said.push_back(*place);
    }
    std::vector<std::int32_t> found;
    for (std::size_t i = 0; i < layout_.commands.size(); ++i) {
      if (layout_.commands[i].type == kCommandMenu) found.push_back(static_cast<std::int32_t>(i));
    }
    if (said != found) refuseLayout("the position of a menu is wrong");
  }

  StoredCommand command(const Fields& fields) const {
    StoredCommand stored;
    stored.type = fields.get<std::int32_t>(command::kType);
    stored.key = fields.get<std::string>(command::kKey);
    stored.visible = fields.get<bool>(command::kVisible);
    stored.caption = fields.get<std::string>(command::kCaption);
    stored.shortCaption = fields.get<std::string>(command::kShortCaption);
    stored.description = fields.get<std::string>(command::kDescription);
    if (const auto* guid = fields.find<std::string>(command::kCategory))
      stored.category = resolve(categories_, *guid);
    if (const auto* guid = fields.find<std::string>(command::kImage)) stored.image = resolve(images_, *guid);
    fields.each(command::kHotKey, [&](const Fields& key) {
      stored.hotKeys.push_back(
          {key.get<std::int32_t>(hot_key::kShift), key.get<std::int32_t>(hot_key::kKeyCode)});
    });
    if (stored.type == kCommandMenu) {
      stored.menu = entries(Fields(fields.get<Items>(command::kPressedOrMenu)));
    } else {
      stored.pressed = fields.get<bool>(command::kPressedOrMenu);
    }
    if (stored.type == kCommandCombo) stored.text = fields.get<std::string>(command::kText);
    if (stored.type == kCommandCombo || stored.type == kCommandPanel) {
      stored.width = fields.get<std::int32_t>(command::kWidth);
    }
    if (stored.type == kCommandPanel) {
      stored.spring = fields.get<bool>(command::kSpring);
      stored.progress = fields.get<bool>(command::kProgress);
    }
    return stored;
  }

  std::vector<StoredEntry> entries(const Fields& bar) const {
    std::vector<StoredEntry> result;
    bar.each(bar::kEntry, [&](const Fields& fields) {
      fields.get<std::string>(entry::kGuid);
      result.push_back({resolve(commands_, fields.get<std::string>(entry::kCommand)),
                        fields.get<bool>(entry::kBeginGroup)});
    });
    return result;
  }

  void bars(std::int32_t id) {
    const Fields list(top_.get<Items>(id));
    list.each(bar::kBar, [this, id](const Fields& fields) {
      StoredBar stored;
      stored.name = fields.get<std::string>(bar::kName);
      stored.kind = enumerated(fields.get<std::int32_t>(bar::kKind), BarKind::StatusBar);
      stored.visible = fields.get<bool>(bar::kVisible);
      stored.edge = enumerated(fields.get<std::int32_t>(bar::kEdge), Edge::Bottom);
      stored.row = fields.get<std::int32_t>(bar::kRow);
      stored.entries = entries(fields);
      if ((stored.kind == BarKind::StatusBar) != (id == top::kStatusBars)) {
        refuseLayout("a bar is among bars of another kind");
      }
      layout_.bars.push_back(std::move(stored));
    });
  }

  void panes() {
    const Fields list(top_.get<Items>(top::kPanes));
    list.each(pane::kPane, [this](const Fields& fields) {
      StoredPane stored;
      stored.name = fields.get<std::string>(pane::kName);
      stored.edge = enumerated(fields.get<std::int32_t>(pane::kEdge), Edge::Bottom);
      stored.size = fields.get<std::int32_t>(pane::kSize);
      add(panes_, fields.get<std::string>(pane::kGuid), stored.name);
      layout_.panes.push_back(std::move(stored));
    });
  }

  void dockWindows() {
    const Fields list(top_.get<Items>(top::kDockWindows));
    list.each(dock_window::kWindow, [this](const Fields& fields) {
      StoredDockWindow stored;
      stored.key = fields.get<std::string>(dock_window::kKey);
      stored.visible = fields.get<bool>(dock_window::kVisible);
      stored.caption = fields.get<std::string>(dock_window::kCaption);
      stored.pane = resolve(panes_, fields.get<std::string>(dock_window::kPane));
      layout_.dockWindows.push_back(std::move(stored));
    });
  }

  Fields top_;
  StoredLayout layout_;
  NamesByGuid images_, categories_, commands_, panes_;
};

/// Checks the header and returns the tag stream after it.
std::span<const std::byte> streamOf(std::span<const std::byte> block) {
  if (block.size() < kHeaderSize) refuseLayout("it is truncated");
  if (block.size() > kLargestBlock) refuseLayout("it is larger than any layout");
  const auto word = [&](std::size_t offset) {
    return static_cast<std::int32_t>(loadLittle<std::uint32_t>(block.subspan(offset)));
  };
  const auto magic = wideFromUtf8(kMagic);
  if (!std::equal(magic.begin(), magic.end(), block.begin())) refuseLayout("it has no layout header");
  if (word(16) != kVersion) refuseLayout("its version is unknown");
  if (static_cast<std::uint32_t>(word(kChecksumOffset)) != layoutChecksum(block)) {
    refuseLayout("its checksum is wrong, so it was truncated or changed");
  }
  if (word(24) != kHeaderField1 || word(28) != kHeaderField2) refuseLayout("its header is unknown");
  const auto start = static_cast<std::uint32_t>(word(32));
  if (start < kHeaderSize || start > block.size()) refuseLayout("its stream offset is invalid");
  return block.subspan(start);
}

void requireOrder(const Items& stream) {
  constexpr std::array kOrder = {top::kFont, top::kImageGroups, top::kCategories, top::kCommands,
                                 top::kBars, top::kStatusBars,  top::kPanes,      top::kDockWindows};
  bool inOrder = stream.size() == kOrder.size();
  for (std::size_t i = 0; inOrder && i < kOrder.size(); ++i) inOrder = stream[i].id == kOrder[i];
  if (!inOrder) refuseLayout("its parts are not in order");
}

}  // namespace

std::uint32_t layoutChecksum(std::span<const std::byte> block) {
  static constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? 0xEDB88320u : 0u);
      table[i] = value;
    }
    return table;
  }();
  std::uint32_t sum = 0xFFFFFFFFu;
  for (const std::byte byte : block.subspan(kChecksumOffset + 4)) {
    sum = sum >> 8 ^ kTable[(sum ^ static_cast<std::uint32_t>(byte)) & 0xFF];
  }
  return ~sum;
}

StoredLayout readLayout(std::span<const std::byte> block) {
  const Items stream = parseTags(streamOf(block));
  requireOrder(stream);
  return Interpreter(stream).layout();
}

}  // namespace kestrel::docking
