#include "SizeDialog.h"

#include <cmath>

#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Image.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

std::vector<TextBox*> BindFields(Form& form) {
  std::vector<TextBox*> fields;
  for (std::int32_t index = 0; index <= form.UBound("txtField"); ++index) {
    fields.push_back(&Bind<TextBox>(form, "txtField", index));
  }
  return fields;
}

/// True while it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;
  ~Raised() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

SizeDialog::SizeDialog(const char* formName, IImageProcessingCtl& source)
    : DialogBase(formName),
      Source(source),
      chkAspect(Bind<CheckBox>(Form(), "chkAspect")),
      txtField(BindFields(Form())),
      lblData{&Bind<Label>(Form(), "lblData", 0), &Bind<Label>(Form(), "lblData", 1)} {
  for (TextBox* const box : txtField) {
    const std::int32_t index = box->Index();
    Keep(box->Change.Connect([this, index] { txtField_Change(index); }));
    Keep(box->GotFocus.Connect([this, index] { txtField_GotFocus(index); }));
  }
}

std::int32_t SizeDialog::ImageWidth() { return Required(Source.Image()).Width(); }

std::int32_t SizeDialog::ImageHeight() { return Required(Source.Image()).Height(); }

double SizeDialog::Field(std::int32_t Index) {
  return Val(txtField.at(static_cast<std::size_t>(Index))->Text());
}

void SizeDialog::MakeNumberBoxes() {
  for (TextBox* const box : txtField) MakeNumberBox(*box);
}

void SizeDialog::ShowOriginalSize() {
  lblData[0]->Caption(ToText(ImageWidth()) + " Pixels");
  lblData[1]->Caption(ToText(ImageHeight()) + " Pixels");
}

void SizeDialog::KeepAspect(std::int32_t Index, bool IsPercent) {
  if (iKeepingAspect) return;
  const Raised keeping(iKeepingAspect);
  float width = ToSingle(Field(kFieldWidth));
  float height = ToSingle(Field(kFieldHeight));
  if (chkAspect.Value() == 0) return;
  // Single precision is part of the result: 1 of 3 pixels is 33.33333 percent, and 0.9999999 of 3 rows is 0.
  if (Index == kFieldWidth) {
    const float work = IsPercent ? width : ToSingle(double{width} / ImageWidth() * 100);
    height = IsPercent ? work : ToSingle(ImageHeight() / 100.0 * double{work});
  } else if (Index == kFieldHeight) {
    const float work = IsPercent ? height : ToSingle(double{height} / ImageHeight() * 100);
    width = IsPercent ? work : ToSingle(ImageWidth() / 100.0 * double{work});
  }
  txtField[kFieldWidth]->Text(ToText(std::floor(double{width})));
  txtField[kFieldHeight]->Text(ToText(std::floor(double{height})));
}

bool SizeDialog::Succeeds(const std::function<void()>& operation) {
  try {
    operation();
    return true;
  } catch (...) {
    Exclaim(DescribeErrorToShow().Description);
    return false;
  }
}

void SizeDialog::txtField_GotFocus(std::int32_t Index) {
  try {
    modProcessing::FormUtility().SelectAllText(*txtField.at(static_cast<std::size_t>(Index)));
  } catch (...) {
    QDK_TRAILER_OF(TypeName(), txtField_GotFocus, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

}  // namespace kestrel
