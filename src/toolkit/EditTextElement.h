#pragma once
// The text of an edit control, drawn with the toolkit's means where the control has it: every character at the place
// that the control tells, scrolled as it is there, with the selection. No window. User-interface thread.

#include <cstddef>
#include <string>
#include <vector>

#include "toolkit/EditReading.h"
#include "toolkit/GlyphRun.h"
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
  /// From the left edge of a character to its right one, in the control's client area.
  struct Cell {
    long left = 0, right = 0;
  };

  static std::vector<Cell> PlaceCells(const EditReading &reading, const std::vector<GlyphRun> &runs);
  static Cell CellInRun(const EditReading &reading, const GlyphRun &run, std::size_t index);
  std::vector<GlyphRun> Shape(const std::wstring &text) const;
  std::vector<Cell> SelectedCells() const;
  void DrawGlyphs(D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const;
  void DrawRun(const GlyphRun &run, D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const;
  void DrawSelection(D2D1_POINT_2F origin) const;
  std::vector<float> PlacedAdvances(const GlyphRun &run) const;

  BrushPtr highlightBrush;
  BrushPtr highlightTextBrush;
  EditReading reading;
  std::vector<GlyphRun> runs; // of the reading's text
  std::vector<Cell> cells;    // for every character of it
};

} // namespace lumenor
