#pragma once
// What the painters have in common: where a layout puts the picture, and the label that it asks for. User-interface
// thread only.

#include <memory>
#include <string>

#include <dwrite.h>

#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/UIElement.h"

namespace lumenor {

class TextElement;

/// A white label at the text margins of `layout` in `button`, for the size that the button has now. Raises
/// HResultError.
std::shared_ptr<TextElement> MakeButtonLabel(const RenderTargetPtr &renderTarget, const std::wstring &text,
                                             const ButtonLayout &layout, const UIElement &button);

/// The rectangle of the picture at the image margins of `layout` in a button at `rect`.
D2D1_RECT_F PictureRectangle(const ButtonLayout &layout, const D2D1_RECT_F &rect);

/// The rectangle of the label at the text margins of `layout` in a button at `rect`.
D2D1_RECT_F LabelRectangle(const ButtonLayout &layout, const D2D1_RECT_F &rect);

/// The alignment that the layout's flag asks for.
DWRITE_TEXT_ALIGNMENT LabelAlignment(const ButtonLayout &layout);

} // namespace lumenor
