// Each forwarded member does what the control's member of the same name does with the same arguments.

#include <functional>
#include <ios>
#include <sstream>

#include "HostTest.h"
#include "imaging/contract/ImageView.h"

namespace kestrel {
namespace {

/// A call of the member on the class, and on the control of another object; both return their result.
struct Member {
  std::string name;
  std::function<std::string(ImageProcessing&)> ours;
  std::function<std::string(IImageProcessingCtl&)> controls;
  std::string form = {};    ///< the dialog that it shows
  std::int32_t button = 0;  ///< and the button that the user presses in it
  bool visible = true;      ///< whether the state shows that it ran
};

std::string text(std::int32_t value) { return std::to_string(value); }
std::string text(bool value) { return value ? "True" : "False"; }
std::string text(const PicturePtr& picture);

template <typename Call, typename Target>
std::string resultOf(Call& call, Target& target) {
  if constexpr (std::is_void_v<decltype(call(target))>) {
    call(target);
    return "nothing";
  } else {
    return text(call(target));
  }
}

template <typename Call>
Member member(std::string name, Call call) {
  return {.name = std::move(name),
          .ours = [call](ImageProcessing& target) mutable { return resultOf(call, target); },
          .controls = [call](IImageProcessingCtl& target) mutable { return resultOf(call, target); }};
}

template <typename Call>
Member dialog(std::string name, std::string form, std::int32_t button, Call call) {
  Member made = member(std::move(name), call);
  made.form = std::move(form);
  made.button = button;
  made.visible = button == 0;
  return made;
}

std::string pixelsOf(const Image& image) {
  std::ostringstream out;
  out << image.Width() << "x" << image.Height() << std::hex;
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    for (std::int32_t x = 0; x < image.Width(); ++x) {
      const Colour pixel = image.GetPixel(x, y);
      out << ' ' << pixel.Value() << '/' << static_cast<int>(pixel.Alpha());
    }
  }
  return out.str();
}

class HostMembers : public HostTest {
 protected:
  /// All that the members can change.
  std::string stateOf(const ImageProcessing& processing) {
    IImageProcessingCtl& control = processing.Control();
    ImageView& view = control.ImageControl();
    std::ostringstream out;
    out << control.Filename() << ' ' << control.Format() << ' ' << control.Tool() << ' '
        << control.ShowClose() << ' ' << control.Changed() << ' ' << view.Zoom() << ' '
        << view.SelectionVisible() << ' ' << view.SelectionLeft() << ' ' << view.SelectionTop() << ' '
        << view.SelectionWidth() << ' ' << view.SelectionHeight() << ' ' << view.UndoName() << ' '
        << view.RedoName() << '\n';
    if (platform().Clipboard().hasBitmap()) {
      const engine::Bitmap copied = platform().Clipboard().take();
      out << "clipboard " << copied.width() << "x" << copied.height() << '\n';
    }
    if (control.Image()) out << pixelsOf(*control.Image());
    return out.str();
  }

  /// An editor in which every member has something to do.
  std::unique_ptr<ImageProcessing> prepared(const std::string& file) {
    auto processing = std::make_unique<ImageProcessing>();
    processing->Initialize();
    EXPECT_TRUE(processing->OpenImage(file));
    processing->Show();
    formOf(*processing).Move(0, 0, 800, 600);
    processing->Options()->ResizeWidth(21);
    processing->Options()->ResizeHeight(17);
    processing->Options()->ResizeCanvasWidth(50);
    processing->Options()->ResizeCanvasHeight(45);
    processing->FlipVertically();
    processing->FlipVertically();
    processing->Undo();
    processing->ZoomIn();
    processing->SetSelection(4, 5, 20, 10);
    platform().Clipboard().holdNoPicture();
    return processing;
  }

  void expectForwarded(const Member& member) {
    SCOPED_TRACE(member.name);
    const auto run = [&](auto call) {
      const auto processing = prepared(png());
      const std::string before = stateOf(*processing);
      if (!member.form.empty()) {
        user().uses(member.form, [&](Form& form) { pressButton(form, member.button); });
      }
      const std::string result = call(*processing);
      const std::string after = stateOf(*processing);
      EXPECT_EQ(after != before, member.visible);
      return result + '\n' + after;
    };
    const std::string ours = run([&](ImageProcessing& each) { return member.ours(each); });
    const std::string controls = run([&](ImageProcessing& each) { return member.controls(each.Control()); });
    EXPECT_EQ(ours, controls);
  }
};

std::string text(const PicturePtr& picture) {
  if (!picture) return "no picture";
  const auto work = modProcessing::Platform().CreateImgX();
  work->Document().FromPicture(*picture);
  return pixelsOf(*work->Image());
}

TEST_F(HostMembers, ImageOperationsPassAllArgumentsUnchanged) {
  const Member members[] = {
      member("Resize", [](auto& e) { e.Resize(21, 17, 3); }),
      member("Resize, defaults", [](auto& e) { e.Resize(20); }),
      member("ResizeCanvas", [](auto& e) { e.ResizeCanvas(50, 45, 3, 4, 0x000000FF); }),
      member("ResizeCanvas, defaults", [](auto& e) { e.ResizeCanvas(50, 45); }),
      member("Rotate", [](auto& e) { e.Rotate(30.5F, 0x0000FF00, true); }),
      member("Rotate, defaults", [](auto& e) { e.Rotate(12); }),
      member("FlipHorizontally", [](auto& e) { e.FlipHorizontally(true); }),
      member("FlipHorizontally, defaults", [](auto& e) { e.FlipHorizontally(); }),
      member("FlipVertically", [](auto& e) { e.FlipVertically(true); }),
      member("FlipVertically, defaults", [](auto& e) { e.FlipVertically(); }),
      member("ApplyGrayScale", [](auto& e) { e.ApplyGrayScale(true); }),
      member("ApplyGrayScale, defaults", [](auto& e) { e.ApplyGrayScale(); }),
      member("FlattenAlpha", [](auto& e) { e.FlattenAlpha(0x00123456); }),
      member("FlattenAlpha, defaults", [](auto& e) { e.FlattenAlpha(); }),
      member("ApplyDropShadow", [](auto& e) { e.ApplyDropShadow(3, 4, 0x00445566, 77, 2, true); }),
      member("ApplyDropShadow, defaults", [](auto& e) { e.ApplyDropShadow(); }),
      member("ApplyMaskedDropShadow",
             [](auto& e) { e.ApplyMaskedDropShadow(3, 4, 0x00445566, 77, 2, 0x00336699, false, true); }),
      member("ApplyMaskedDropShadow, automatic",
             [](auto& e) { e.ApplyMaskedDropShadow(3, 4, 0x00445566, 77, 2, 0x00123456, true); }),
      member("ApplyMaskedDropShadow, defaults", [](auto& e) { e.ApplyMaskedDropShadow(); }),
      member("CropToSelection", [](auto& e) { e.CropToSelection(); }),
  };
  for (const Member& each : members) expectForwarded(each);
}

TEST_F(HostMembers, SelectionClipboardZoomAndUndo) {
  const Member members[] = {
      member("SetSelection", [](auto& e) { e.SetSelection(1, 2, 13, 14); }),
      member("SelectAll", [](auto& e) { e.SelectAll(); }),
      member("Copy", [](auto& e) { e.Copy(true); }),
      member("Copy, defaults", [](auto& e) { e.Copy(); }),
      member("Cut", [](auto& e) { e.Cut(true); }),
      member("Cut, defaults", [](auto& e) { e.Cut(); }),
      member("ZoomIn", [](auto& e) { e.ZoomIn(); }),
      member("ZoomOut", [](auto& e) { e.ZoomOut(); }),
      member("ZoomActualSize", [](auto& e) { e.ZoomActualSize(); }),
      member("Undo", [](auto& e) { e.Undo(); }),
      member("Redo", [](auto& e) { e.Redo(); }),
  };
  for (const Member& each : members) expectForwarded(each);
}

TEST_F(HostMembers, DialogsReturnTheAnswerOfTheUser) {
  for (const std::int32_t button : {0, 1}) {
    const Member members[] = {
        dialog("ShowFlattenAlphaDialog", "frmFlattenAlpha", button,
               [](auto& e) { return e.ShowFlattenAlphaDialog(); }),
        dialog("ShowMaskedDropShadowDialog", "frmDropShadow", button,
               [](auto& e) { return e.ShowMaskedDropShadowDialog(); }),
        dialog("ShowDropShadowDialog", "frmDropShadow", button,
               [](auto& e) { return e.ShowDropShadowDialog(); }),
        dialog("ShowResizeCanvasDialog", "frmResizeCanvas", button,
               [](auto& e) { return e.ShowResizeCanvasDialog(); }),
        dialog("ShowResizeDialog", "frmResize", button, [](auto& e) { return e.ShowResizeDialog(); }),
    };
    for (const Member& each : members) expectForwarded(each);
    Member rotate =
        dialog("ShowRotateDialog", "frmRotate", button, [](auto& e) { return e.ShowRotateDialog(); });
    expectForwarded(rotate);
    Member thumbnail = dialog("ShowGetThumnailDialog", "frmGetThumnail", button,
                              [](auto& e) { return e.ShowGetThumnailDialog(); });
    thumbnail.visible = false;
    expectForwarded(thumbnail);
  }
}

TEST_F(HostMembers, Files) {
  const Member members[] = {
      member("OpenImage", [](auto& e) { return e.OpenImage("C:\\a\\other.bmp"); }),
      member(
          "SaveImage",
          [](auto& e) { return e.SaveImage() && modProcessing::FormUtility().FileExists("C:\\a\\b.png"); }),
      member("SaveImageAs", [](auto& e) { return e.SaveImageAs("C:\\a\\c.png"); }),
  };
  makePicture("C:\\a\\other.bmp", 6);
  for (const Member& each : members) {
    Member row = each;
    row.visible = row.name != "SaveImage";
    expectForwarded(row);
  }
}

TEST_F(HostMembers, Thumbnails) {
  Member members[] = {
      member("GetThumbnail",
             [](auto& e) { return e.GetThumbnail(50, 0x00FFFF00, true, 2, 3, 0x00112233, 90, 1); }),
      member("GetThumbnail, defaults", [](auto& e) { return e.GetThumbnail(); }),
  };
  for (Member& each : members) {
    each.visible = false;
    expectForwarded(each);
  }
}

TEST_F(HostMembers, StateIsThatOfTheControl) {
  const auto processing = prepared(png());
  IImageProcessingCtl& control = processing->Control();
  EXPECT_EQ(processing->Filename(), "C:\\a\\b.png");
  EXPECT_EQ(processing->Format(), 2);
  processing->Format(6);
  EXPECT_EQ(control.Format(), 6);
  EXPECT_EQ(processing->Filename(), "C:\\a\\b.bmp");
  processing->Tool(ipToolPan);
  EXPECT_EQ(control.Tool(), ipToolPan);
  control.Tool(ipToolZoom);
  EXPECT_EQ(processing->Tool(), ipToolZoom);
  for (const bool shown : {false, true}) {
    processing->ShowClose(shown);
    EXPECT_EQ(control.ShowClose(), shown);
    EXPECT_EQ(processing->ShowClose(), shown);
  }
  EXPECT_EQ(processing->Image(), control.Image());
  EXPECT_EQ(processing->ImgX(), control.ImgX());
  EXPECT_EQ(&processing->Commands(), &control.Commands());
  EXPECT_EQ(&processing->CommandBars(), &control.CommandBars());
}

TEST_F(HostMembers, ErrorsOfTheControlGoToTheHost) {
  const auto processing = prepared(png());
  EXPECT_EQ(errorOf([&] { processing->ApplyDropShadow(3, 4, 0, 256); }), 6);
  const std::int32_t expected = errorOf([&] { processing->Control().Resize(-1); });
  EXPECT_NE(expected, 0);
  EXPECT_EQ(errorOf([&] { processing->Resize(-1); }), expected);
}

}  // namespace
}  // namespace kestrel
