#pragma once

#include <QString>
#include <QStringList>

#include "platform/thumbnailview/Items.h"

namespace kestrel::qt {

/// What is known of the item, in the user's language: the size of the picture and of the file, the date, and
/// why it is broken or incomplete. One line for each.
QStringList detailsOf(const thumbnails::ItemFacts& facts);

/// Why the picture is broken or incomplete; empty if it is neither.
QString reasonOf(const thumbnails::ItemFacts& facts);

/// A tool tip in rich text: the name and the details.
QString tipOf(const thumbnails::ItemFacts& facts);

}  // namespace kestrel::qt
