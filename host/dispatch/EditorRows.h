#pragma once

#include <cstdint>

#include "Rows.h"
#include "editor/interface/Constants.h"

namespace kestrel::dispatch {

/// The rows that the editor control and the automation class of the editor share. The class calls the
/// control, but its members have numbers of their own.
template <typename Class>
struct EditorRows {
  static constexpr auto Options(std::int32_t number) {
    return ReadOnly("Options", number, &Class::Options,
                    "The settings that all editors of the process share.");
  }
  static constexpr auto Format(std::int32_t number) {
    return Property("Format", number, &Class::Format, &Class::Format,
                    "The format code of the open file. A write changes the extension of Filename.");
  }
  static constexpr auto ShowClose(std::int32_t number) {
    return Property("ShowClose", number, &Class::ShowClose, &Class::ShowClose,
                    "Whether the command Close is shown.");
  }
  static constexpr auto Image(std::int32_t number) {
    return ReadOnly("Image", number, &Class::Image,
                    "The picture's size, format and pixels; Nothing while there is no picture.");
  }
  static constexpr auto ImgX(std::int32_t number) {
    return ReadOnly("ImgX", number, &Class::ImgX, "The picture with its operations.");
  }
  static constexpr auto Commands(std::int32_t number) {
    return ReadOnly("Commands", number, &Class::Commands, "The commands of menus, bars and hot keys.");
  }
  static constexpr auto CommandBars(std::int32_t number) {
    return ReadOnly("CommandBars", number, &Class::CommandBars, "The menu bar, tool bars and status bar.");
  }
  static constexpr auto Filename(std::int32_t number) {
    return ReadOnly("Filename", number, &Class::Filename,
                    "The name of the open file; empty while there is none.");
  }
  static constexpr auto OpenImage(std::int32_t number) {
    return Method(
        "OpenImage", number, &Class::OpenImage, {{"Filename", ""}},
        "Opens a file. Without a name the host is asked for one, then the user. True if a picture was "
        "opened.");
  }
  static constexpr auto SaveImage(std::int32_t number) {
    return Method("SaveImage", number, &Class::SaveImage,
                  "Saves the picture under its name. True if the file was written.");
  }
  static constexpr auto SaveImageAs(std::int32_t number) {
    return Method(
        "SaveImageAs", number, &Class::SaveImageAs, {{"Filename", ""}},
        "Saves the picture under another name. Without a name the host is asked for one, then the user. "
        "True if the file was written.");
  }
  static constexpr auto SetSelection(std::int32_t number) {
    return Method("SetSelection", number, &Class::SetSelection, {"Left", "Top", "Width", "Height"},
                  "Selects a rectangle in picture pixels; sizes may be negative.");
  }
  static constexpr auto SelectAll(std::int32_t number) {
    return Method("SelectAll", number, &Class::SelectAll, "Selects the whole picture.");
  }
  static constexpr auto Copy(std::int32_t number) {
    return Method("Copy", number, &Class::Copy, {{"UseSelection", false}},
                  "Copies the picture, or the selection, to the clipboard.");
  }
  static constexpr auto Cut(std::int32_t number) {
    return Method(
        "Cut", number, &Class::Cut, {{"UseSelection", false}},
        "Copies the selection, or the picture without one, and fills the area with the drawing color.");
  }
  static constexpr auto Resize(std::int32_t number) {
    return Method("Resize", number, &Class::Resize, {"Width", {"Height", 0}, {"ResampleMethod", 0}},
                  "Resamples the picture to a size; height 0 keeps the aspect ratio.");
  }
  static constexpr auto ResizeCanvas(std::int32_t number) {
    return Method(
        "ResizeCanvas", number, &Class::ResizeCanvas,
        {"Width", "Height", {"OffsetX", 0}, {"OffsetY", 0}, ColorArgument("BackColor", ipUseDefault)},
        "Places the picture on a canvas of another size.");
  }
  static constexpr auto Rotate(std::int32_t number) {
    return Method("Rotate", number, &Class::Rotate,
                  {"Angle", ColorArgument("BackColor", ipUseDefault), {"ApplyToSelection", false}},
                  "Rotates clockwise by an angle in degrees.");
  }
  static constexpr auto FlipHorizontally(std::int32_t number) {
    return Method("FlipHorizontally", number, &Class::FlipHorizontally, {{"ApplyToSelection", false}},
                  "Mirrors left and right.");
  }
  static constexpr auto FlipVertically(std::int32_t number) {
    return Method("FlipVertically", number, &Class::FlipVertically, {{"ApplyToSelection", false}},
                  "Mirrors top and bottom.");
  }
  static constexpr auto ApplyGrayScale(std::int32_t number) {
    return Method("ApplyGrayScale", number, &Class::ApplyGrayScale, {{"ApplyToSelection", false}},
                  "Converts the colors to gray.");
  }
  static constexpr auto FlattenAlpha(std::int32_t number) {
    return Method("FlattenAlpha", number, &Class::FlattenAlpha, {ColorArgument("Color", ipUseDefault)},
                  "Replaces transparency by a color.");
  }
  static constexpr auto ApplyDropShadow(std::int32_t number) {
    return Method("ApplyDropShadow", number, &Class::ApplyDropShadow,
                  {{"OffsetX", ipUseDefault},
                   {"OffsetY", ipUseDefault},
                   ColorArgument("ShadowColor", ipUseDefault),
                   {"Opactity", ipUseDefault},
                   {"BlurLevel", ipUseDefault},
                   {"ApplyToSelection", false}},
                  "Adds a drop shadow below the picture.");
  }
  static constexpr auto ApplyMaskedDropShadow(std::int32_t number) {
    return Method("ApplyMaskedDropShadow", number, &Class::ApplyMaskedDropShadow,
                  {{"OffsetX", ipUseDefault},
                   {"OffsetY", ipUseDefault},
                   ColorArgument("ShadowColor", ipUseDefault),
                   {"Opactity", ipUseDefault},
                   {"BlurLevel", ipUseDefault},
                   ColorArgument("MaskColor", ipUseDefault),
                   {"AutomaticMask", false},
                   {"ApplyToSelection", false}},
                  "Adds a drop shadow below the pixels that do not have the mask color.");
  }
  static constexpr auto CropToSelection(std::int32_t number) {
    return Method("CropToSelection", number, &Class::CropToSelection, "Crops the picture to the selection.");
  }
  static constexpr auto Undo(std::int32_t number) {
    return Method("Undo", number, &Class::Undo, "Undoes the latest step.");
  }
  static constexpr auto Redo(std::int32_t number) {
    return Method("Redo", number, &Class::Redo, "Redoes the step that was undone last.");
  }
  static constexpr auto ZoomIn(std::int32_t number) {
    return Method("ZoomIn", number, &Class::ZoomIn,
                  "Enlarges the view by 0.1 below actual size and by 1 above it.");
  }
  static constexpr auto ZoomOut(std::int32_t number) {
    return Method("ZoomOut", number, &Class::ZoomOut,
                  "Reduces the view by 0.1 below actual size and by 1 above it.");
  }
  static constexpr auto ZoomActualSize(std::int32_t number) {
    return Method("ZoomActualSize", number, &Class::ZoomActualSize,
                  "Shows one picture pixel as one pixel of the screen.");
  }
  static constexpr auto ShowFlattenAlphaDialog(std::int32_t number) {
    return Method("ShowFlattenAlphaDialog", number, &Class::ShowFlattenAlphaDialog,
                  "Lets the user replace transparency by a color. False if canceled.");
  }
  static constexpr auto ShowRotateDialog(std::int32_t number) {
    return Method(
        "ShowRotateDialog", number, &Class::ShowRotateDialog,
        "Lets the user rotate the picture or the selection. Returns the clockwise angle, 0 if canceled.");
  }
  static constexpr auto ShowMaskedDropShadowDialog(std::int32_t number) {
    return Method("ShowMaskedDropShadowDialog", number, &Class::ShowMaskedDropShadowDialog,
                  "Lets the user add a contoured drop shadow. False if canceled.");
  }
  static constexpr auto ShowDropShadowDialog(std::int32_t number) {
    return Method("ShowDropShadowDialog", number, &Class::ShowDropShadowDialog,
                  "Lets the user add a drop shadow. False if canceled.");
  }
  static constexpr auto ShowResizeCanvasDialog(std::int32_t number) {
    return Method("ShowResizeCanvasDialog", number, &Class::ShowResizeCanvasDialog,
                  "Lets the user resize the canvas. False if canceled.");
  }
  static constexpr auto ShowResizeDialog(std::int32_t number) {
    return Method("ShowResizeDialog", number, &Class::ShowResizeDialog,
                  "Lets the user resize the picture. False if canceled.");
  }
  static constexpr auto ShowGetThumnailDialog(std::int32_t number) {
    return Method("ShowGetThumnailDialog", number, &Class::ShowGetThumnailDialog,
                  "Lets the user set up a thumbnail and makes it; Nothing if canceled.");
  }
  static constexpr auto GetThumbnail(std::int32_t number) {
    return Method("GetThumbnail", number, &Class::GetThumbnail,
                  {{"Size", ipUseDefault},
                   ColorArgument("BackColor", ipUseDefault),
                   {"AddDropShadow", false},
                   {"OffsetX", ipUseDefault},
                   {"OffsetY", ipUseDefault},
                   ColorArgument("ShadowColor", ipUseDefault),
                   {"Opacity", ipUseDefault},
                   {"BlurLevel", ipUseDefault}},
                  "Makes a reduced copy of the picture; the size is in percent of its width.");
  }

  static constexpr auto ImageOpen(std::int32_t number) {
    return EventOf("ImageOpen", number, &Class::ImageOpen, {"Filename"}, "A picture was opened.");
  }
  static constexpr auto ImageSave(std::int32_t number) {
    return EventOf("ImageSave", number, &Class::ImageSave, {"Filename"}, "The picture was saved.");
  }
  static constexpr auto RequestOpenFilename(std::int32_t number) {
    return EventOf("RequestOpenFilename", number, &Class::RequestOpenFilename, {"Filename", "CancelDefault"},
                   "A name to open is needed. CancelDefault suppresses the file dialog.");
  }
  static constexpr auto RequestSaveFilename(std::int32_t number) {
    return EventOf("RequestSaveFilename", number, &Class::RequestSaveFilename, {"Filename", "CancelDefault"},
                   "A name to save to is needed. CancelDefault suppresses the file dialog.");
  }
};

}  // namespace kestrel::dispatch
