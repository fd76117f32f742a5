#include "StoredPositions.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace kestrel::store {
namespace {

/// The largest valid coordinate or size. Larger stored values are not ours.
constexpr std::int32_t kMaxCoordinate = 1 << 20;

std::int64_t overlap(const Rectangle& a, const Rectangle& b) {
  const std::int64_t width = std::min(a.Left + a.Width, b.Left + b.Width) - std::max(a.Left, b.Left);
  const std::int64_t height = std::min(a.Top + a.Height, b.Top + b.Height) - std::max(a.Top, b.Top);
  return width > 0 && height > 0 ? width * height : 0;
}

std::int64_t distance(const Rectangle& a, const Rectangle& b) {
  const auto gap = [](std::int32_t from, std::int32_t length, std::int32_t to, std::int32_t toLength) {
    return std::int64_t{std::max({0, to - (from + length), from - (to + toLength)})};
  };
  return gap(a.Left, a.Width, b.Left, b.Width) + gap(a.Top, a.Height, b.Top, b.Height);
}

std::optional<std::int32_t> readNumber(RegistryStore& store, const std::string& key, const char* name) {
  const Variant value = store.ReadValue(HKEY_CURRENT_USER, key, name);
  if (value.TypeCode() != static_cast<std::int32_t>(Variant::Type::kInt32)) return std::nullopt;
  const std::int32_t number = value.ToInt32();
  if (number < -kMaxCoordinate || number > kMaxCoordinate) return std::nullopt;
  return number;
}

std::optional<Rectangle> readRectangle(RegistryStore& store, const std::string& key) {
  const auto left = readNumber(store, key, "Left");
  const auto top = readNumber(store, key, "Top");
  const auto width = readNumber(store, key, "Width");
  const auto height = readNumber(store, key, "Height");
  if (!left || !top || !width || !height || *width <= 0 || *height <= 0) return std::nullopt;
  return Rectangle{*left, *top, *width, *height};
}

/// The screen with the largest overlap, or else the nearest. There must be at least one screen.
Rectangle screenFor(const Rectangle& wanted, WindowFunctions& windows) {
  Rectangle best = windows.ScreenArea(0);
  for (std::int32_t i = 1; i < windows.ScreenCount(); ++i) {
    const Rectangle area = windows.ScreenArea(i);
    const std::int64_t here = overlap(wanted, area), there = overlap(wanted, best);
    if (here > there || (here == there && here == 0 && distance(wanted, area) < distance(wanted, best))) {
      best = area;
    }
  }
  return best;
}

}  // namespace

Rectangle fitted(const Rectangle& rectangle, const Rectangle& area) {
  Rectangle result = rectangle;
  result.Width = std::min(rectangle.Width, area.Width);
  result.Height = std::min(rectangle.Height, area.Height);
  result.Left = std::clamp(rectangle.Left, area.Left, area.Left + area.Width - result.Width);
  result.Top = std::clamp(rectangle.Top, area.Top, area.Top + area.Height - result.Height);
  return result;
}

Rectangle keptOnScreen(const Rectangle& client, const Margins& frame, WindowFunctions& windows) {
  const std::int32_t count = windows.ScreenCount();
  if (count == 0) return client;
  const Rectangle whole{client.Left - frame.Left, client.Top - frame.Top,
                        client.Width + frame.Left + frame.Right, client.Height + frame.Top + frame.Bottom};
  const Rectangle place = fitted(whole, screenFor(whole, windows));
  return {place.Left + frame.Left, place.Top + frame.Top, std::max(place.Width - frame.Left - frame.Right, 0),
          std::max(place.Height - frame.Top - frame.Bottom, 0)};
}

void StoredPositions::LoadPosition(Form& form, const std::string& Name, std::int32_t Placement,
                                   std::int32_t Screen) {
  if (registryKey_.empty()) return;
  const std::string key = keyOf(form, Name);
  if (const auto stored = readRectangle(store_, key)) {
    place(form, *stored);
    if (readNumber(store_, key, "WindowState") == kWindowMaximized) form.WindowState(kWindowMaximized);
    return;
  }
  fitSize(form, Placement == kPlaceOnScreenCenter ? Screen : 0);
  if (Placement == kPlaceOnScreenCenter) center(form, Screen);
}

void StoredPositions::SavePosition(Form& form, const std::string& Name) {
  if (registryKey_.empty()) return;
  const std::int32_t state = form.WindowState();
  if (state == kWindowMinimized) return;
  const std::string key = keyOf(form, Name);
  const auto write = [&](const char* name, std::int32_t value) {
    store_.WriteValue(HKEY_CURRENT_USER, key, name, value, kStoreNumber);
  };
  const Rectangle normal = form.NormalPlace();
  StoreBatch batch(store_);
  write("WindowState", state);
  write("Left", normal.Left);
  write("Top", normal.Top);
  write("Width", normal.Width);
  write("Height", normal.Height);
  batch.Commit();
}

std::string StoredPositions::keyOf(const Form& form, const std::string& name) const {
  return registryKey_ + "\\" + (name.empty() ? form.Name() : name);
}

void StoredPositions::fitSize(Form& form, std::int32_t screen) {
  if (screen < 0 || screen >= windows_.ScreenCount()) return;
  const Rectangle area = windows_.ScreenArea(screen);
  const Margins frame = windows_.FrameOf(form.hWnd());
  form.Width(std::min(form.Width(), area.Width - frame.Left - frame.Right));
  form.Height(std::min(form.Height(), area.Height - frame.Top - frame.Bottom));
}

void StoredPositions::center(Form& form, std::int32_t screen) {
  if (screen < 0 || screen >= windows_.ScreenCount()) return;
  const Rectangle area = windows_.ScreenArea(screen);
  place(form, {area.Left + (area.Width - form.Width()) / 2, area.Top + (area.Height - form.Height()) / 2,
               form.Width(), form.Height()});
}

void StoredPositions::place(Form& form, const Rectangle& wanted) {
  const Rectangle client = keptOnScreen(wanted, windows_.FrameOf(form.hWnd()), windows_);
  form.Move(client.Left, client.Top, client.Width, client.Height);
}

}  // namespace kestrel::store
