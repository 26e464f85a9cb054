#include "toolkit/EditTextElement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenor {

namespace {

bool IsControlCharacter(wchar_t character) {
  return character < L' ' || (character >= 0x7F && character < 0xA0) || character == 0x2028 || character == 0x2029;
}

/// The text with a blank for every character that would begin another line or means nothing to the shaping, so that
/// each character keeps its index. The control gives them room or none; either way nothing is seen there.
std::wstring Drawable(std::wstring text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i + 1 < text.size() && IS_SURROGATE_PAIR(text[i], text[i + 1]))
      ++i;
    else if (IS_HIGH_SURROGATE(text[i]) || IS_LOW_SURROGATE(text[i]))
      text[i] = 0xFFFD;
    else if (IsControlCharacter(text[i]))
      text[i] = L' ';
  }
  return text;
}

/// The characters of `run` from `character` to the first one that has glyphs of its own again.
std::size_t EndOfCluster(const GlyphRun &run, std::size_t character) {
  std::size_t end = character + 1;
  while (end < run.length && run.clusters[end] == run.clusters[character])
    ++end;
  return end;
}

D2D1_RECT_F Offset(const D2D1_RECT_F &rect, D2D1_POINT_2F by) {
  return {rect.left + by.x, rect.top + by.y, rect.right + by.x, rect.bottom + by.y};
}

} // namespace

EditTextElement::EditTextElement(RenderTargetPtr renderTarget, BrushPtr highlightBrush, BrushPtr highlightTextBrush)
    : TextElement(std::move(renderTarget)), highlightBrush(std::move(highlightBrush)),
      highlightTextBrush(std::move(highlightTextBrush)) {}

// Whatever may fail comes before the first change: a reading is never kept beside the glyphs of another text.
void EditTextElement::Show(EditReading newReading) {
  const bool shaped = newReading.text == reading.text;
  std::vector<GlyphRun> newRuns = shaped ? std::vector<GlyphRun>() : Shape(newReading.text);
  std::vector<Cell> newCells = PlaceCells(newReading, shaped ? runs : newRuns);
  Text.Set(newReading.text);
  reading = std::move(newReading);
  cells = std::move(newCells);
  if (!shaped)
    runs = std::move(newRuns);
}

void EditTextElement::Update() {
  TextElement::Update();
  if (IsUpdating())
    return;
  std::vector<GlyphRun> newRuns = Shape(reading.text);
  cells = PlaceCells(reading, newRuns);
  runs = std::move(newRuns);
}

std::vector<GlyphRun> EditTextElement::Shape(const std::wstring &text) const {
  return ShapeText(Drawable(text), textFormat.Get());
}

std::vector<EditTextElement::Cell> EditTextElement::PlaceCells(const EditReading &reading,
                                                               const std::vector<GlyphRun> &runs) {
  std::vector<Cell> cells(reading.text.size());
  for (const GlyphRun &run : runs)
    for (std::size_t i = 0; i < run.length; ++i)
      cells[run.start + i] = CellInRun(reading, run, run.start + i);
  return cells;
}

// A character reaches to the next one of its run. The one at the run's end has its own width: what follows may stand
// anywhere.
EditTextElement::Cell EditTextElement::CellInRun(const EditReading &reading, const GlyphRun &run, std::size_t index) {
  const long edge = reading.positions[index];
  const long width = reading.widths[index];
  const bool last = index + 1 == run.start + run.length;
  if (!run.rightToLeft) {
    const long next = last ? edge : reading.positions[index + 1];
    return {edge, next > edge ? next : edge + (last ? width : 0)};
  }
  if (!last) {
    const long left = reading.positions[index + 1];
    return {left, edge > left ? edge : left + width};
  }
  // Of a text's first character a control may tell where the line begins instead of the leading edge.
  return index == 0 && edge <= reading.lineStart ? Cell{edge, edge + width} : Cell{edge - width, edge};
}

void EditTextElement::Paint(RenderTargetPtr, const D2D1_RECT_F *rect) {
  if (brush == nullptr)
    return; // never updated
  const D2D1_POINT_2F origin{rect->left - static_cast<float>(Left.Get()), rect->top - static_cast<float>(Top.Get())};
  DrawGlyphs(origin, brush.Get());
  if (reading.selectionStart != reading.selectionEnd)
    DrawSelection(origin);
}

void EditTextElement::DrawGlyphs(D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const {
  for (const GlyphRun &run : runs)
    if (!run.glyphs.empty() && run.length != 0)
      DrawRun(run, origin, glyphBrush);
}

void EditTextElement::DrawRun(const GlyphRun &run, D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const {
  const std::size_t firstEnd = EndOfCluster(run, 0);
  const std::vector<float> advances = PlacedAdvances(run);
  DWRITE_GLYPH_RUN glyphRun{};
  glyphRun.fontFace = run.face.Get();
  glyphRun.fontEmSize = run.size;
  glyphRun.glyphCount = static_cast<UINT32>(run.glyphs.size());
  glyphRun.glyphIndices = run.glyphs.data();
  glyphRun.glyphAdvances = advances.data();
  glyphRun.glyphOffsets = run.offsets.data();
  glyphRun.isSideways = run.sideways;
  glyphRun.bidiLevel = run.rightToLeft ? 1 : 0;
  const Cell &first = cells[run.start + (run.rightToLeft ? firstEnd - 1 : 0)];
  const float start = static_cast<float>(first.left) + (run.rightToLeft ? advances[0] : 0);
  const auto baseline = static_cast<float>(reading.top + reading.ascent);
  renderTarget->DrawGlyphRun({origin.x + start, origin.y + baseline}, &glyphRun, glyphBrush,
                             DWRITE_MEASURING_MODE_NATURAL);
}

// The pen moves by each glyph's advance, before the glyph in a run from right to left, behind it otherwise. The
// advances are changed so that every cluster's left edge comes to lie where the control has it, on a whole pixel; what
// a cluster is made of keeps together.
std::vector<float> EditTextElement::PlacedAdvances(const GlyphRun &run) const {
  std::vector<float> advances = run.advances;
  if (run.rightToLeft)
    advances[0] = std::round(advances[0]); // the pen starts that far right of the first glyph
  std::size_t character = EndOfCluster(run, 0);
  for (std::size_t former = 0; character < run.length;
       former = std::exchange(character, EndOfCluster(run, character))) {
    const std::size_t end = EndOfCluster(run, character);
    const std::size_t formerLast = run.rightToLeft ? character - 1 : former;
    const std::size_t thisLast = run.rightToLeft ? end - 1 : character;
    float way = static_cast<float>(cells[run.start + thisLast].left - cells[run.start + formerLast].left);
    const std::size_t formerGlyph = run.clusters[former];
    const std::size_t glyph = run.clusters[character];
    if (formerGlyph >= glyph || glyph >= advances.size())
      break;
    if (run.rightToLeft) {
      for (std::size_t i = formerGlyph + 1; i < glyph; ++i)
        way += advances[i];
      advances[glyph] = -way;
    } else {
      for (std::size_t i = formerGlyph; i + 1 < glyph; ++i)
        way -= advances[i];
      advances[glyph - 1] = way;
    }
  }
  return advances;
}

std::vector<EditTextElement::Cell> EditTextElement::SelectedCells() const {
  std::vector<Cell> selected(cells.begin() + static_cast<std::ptrdiff_t>(reading.selectionStart),
                             cells.begin() + static_cast<std::ptrdiff_t>(reading.selectionEnd));
  std::sort(selected.begin(), selected.end(), [](const Cell &a, const Cell &b) { return a.left < b.left; });
  std::vector<Cell> joined;
  for (const Cell &cell : selected)
    if (!joined.empty() && cell.left <= joined.back().right)
      joined.back().right = std::max(joined.back().right, cell.right);
    else
      joined.push_back(cell);
  return joined;
}

// The selected part is drawn a second time, over its own ground.
void EditTextElement::DrawSelection(D2D1_POINT_2F origin) const {
  for (const Cell &cell : SelectedCells()) {
    const D2D1_RECT_F area = Offset({static_cast<float>(cell.left), static_cast<float>(reading.top),
                                     static_cast<float>(cell.right), static_cast<float>(reading.top + reading.height)},
                                    origin);
    renderTarget->PushAxisAlignedClip(&area, D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
    renderTarget->FillRectangle(&area, highlightBrush.Get());
    DrawGlyphs(origin, highlightTextBrush.Get());
    renderTarget->PopAxisAlignedClip();
  }
}

} // namespace lumenor
