#pragma once
// The text of an edit control, drawn in the tree: every character at the position that the control reports, scrolled as
// it is there, with the selection. No window. User-interface thread.

#include <cstddef>
#include <string>
#include <vector>

#include "toolkit/EditReading.h"
#include "toolkit/TextElement.h"

namespace lumenor {

class EditTextElement : public TextElement {
public:
  using BrushPtr = Microsoft::WRL::ComPtr<ID2D1SolidColorBrush>;

  /// The brushes are those of the selection and of the text on it. Raises HResultError.
  EditTextElement(RenderTargetPtr renderTarget, BrushPtr highlightBrush, BrushPtr highlightTextBrush);

  /// What the next Paint shows; Text follows. Raises HResultError, and then the former reading stays.
  void Show(EditReading newReading);

  void Update() override;

  /// Draws on the render target given at construction. The element's own Left and Top say where in `rect`'s
  /// surroundings the control's client area begins.
  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

private:
  using LayoutPtr = Microsoft::WRL::ComPtr<IDWriteTextLayout>;

  /// From the left edge of a character to its right one, in the control's client area.
  struct Cell {
    long left = 0, right = 0;
  };

  struct Run; // glyphs of one font that are drawn in one direction

  void DrawRuns(D2D1_POINT_2F origin, ID2D1Brush *glyphBrush);
  void DrawRun(const Run &run, D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const;
  Cell CellInRun(const Run &run, std::size_t index) const;
  std::vector<float> PlacedAdvances(const Run &run) const;
  void DrawSelection(D2D1_POINT_2F origin);
  std::vector<Cell> SelectedCells() const;

  BrushPtr highlightBrush;
  BrushPtr highlightTextBrush;
  EditReading reading;
  LayoutPtr layout;        // of the reading's text; null before the first one
  std::vector<Cell> cells; // for every character of it, as drawn last
};

} // namespace lumenor
