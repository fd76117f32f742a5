#include "TreeItem.h"

#include <utility>

#include "base/VisibleText.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

TreeItem::TreeItem(TreeItemOwner& owner, std::string key, std::string text, std::string image,
                   std::string selectedImage)
    : owner_(&owner),
      key_(std::move(key)),
      text_(std::move(text)),
      image_(std::move(image)),
      selectedImage_(std::move(selectedImage)) {}

void TreeItem::detach() {
  owner_ = nullptr;
  place_ = {};
  expanded_ = false;
}

void TreeItem::announceLooks() {
  if (owner_) owner_->looksChanged(*this);
}

void TreeItem::Text(const std::string& value) {
  if (value == text_) return;
  text_ = value;
  place_.sortKey.reset();
  announceLooks();
  if (owner_ && place_.parent->sorted()) owner_->orderChanged(*place_.parent);
}

TreeNode* TreeItem::Child() {
  if (!place_.shown.empty()) return place_.shown.front();
  return place_.waiting.empty() ? nullptr : place_.waiting.front();
}

TreeNode* TreeItem::Parent() {
  return place_.parent && place_.parent->place_.parent ? place_.parent : nullptr;
}

std::int32_t TreeItem::Children() const {
  return static_cast<std::int32_t>(place_.shown.size() + place_.waiting.size());
}

void TreeItem::Expanded(bool value) {
  if (owner_) owner_->setExpanded(*this, value);
}

void TreeItem::Selected(bool value) {
  if (owner_) owner_->setSelected(*this, value);
}

void TreeItem::EnsureVisible() {
  if (owner_) owner_->makeVisible(*this);
}

void TreeItem::Checked(bool value) {
  if (value == checked_) return;
  checked_ = value;
  announceLooks();
}

void TreeItem::Sorted(bool value) {
  if (value == sorted_) return;
  sorted_ = value;
  if (value && owner_) owner_->orderChanged(*this);
}

void TreeItem::ExpandedImage(const std::string& value) {
  if (value == expandedImage_) return;
  expandedImage_ = value;
  announceLooks();
}

void TreeItem::SelectedImage(const std::string& value) {
  if (value == selectedImage_) return;
  selectedImage_ = value;
  announceLooks();
}

QString TreeItem::label() const { return toQt(VisibleText(text_)); }

const std::string& TreeItem::shownImage() const {
  if (Selected() && !selectedImage_.empty()) return selectedImage_;
  return expanded_ && !expandedImage_.empty() ? expandedImage_ : image_;
}

}  // namespace kestrel::qt
