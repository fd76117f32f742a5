#pragma once

#include "AlphaPart.h"
#include "ClipboardPort.h"
#include "ColorsObject.h"
#include "DocumentPart.h"
#include "DrawPart.h"
#include "EffectsPart.h"
#include "ImagePart.h"
#include "PictureOwner.h"
#include "WriterPart.h"

namespace kestrel::engine {

/// The sub-objects of a picture's owner.
struct ImagingParts {
  ImagingParts(PictureOwner& owner, ClipboardPort& clipboard)
      : image(owner),
        document(owner, clipboard),
        draw(owner),
        effects(owner),
        writer(owner, clipboard),
        alpha(owner) {}

  ImagePart image;
  DocumentPart document;
  DrawPart draw;
  EffectsPart effects;
  WriterPart writer;
  AlphaPart alpha;
  ColorsObject colors;
};

}  // namespace kestrel::engine
