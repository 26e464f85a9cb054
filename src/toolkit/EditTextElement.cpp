#include "toolkit/EditTextElement.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "system/Log.h"

namespace lumenor {

namespace {

bool IsControlCharacter(wchar_t character) {
  return character < L' ' || (character >= 0x7F && character < 0xA0) || character == 0x2028 || character == 0x2029;
}

/// The text with a blank for every character that would begin another line or can't be shaped, so that each character
/// keeps its index. Whatever width the control gives them, nothing is seen there.
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

/// Hands the runs of a layout to a function instead of drawing them. Lives on the stack of the one call that it is lent
/// to, so its references aren't counted.
class RunRenderer : private IDWriteTextRenderer {
public:
  using Draw = std::function<void(const DWRITE_GLYPH_RUN &run, const DWRITE_GLYPH_RUN_DESCRIPTION &description)>;

  explicit RunRenderer(Draw draw) : draw(std::move(draw)) {}
  virtual ~RunRenderer() = default;

  HRESULT Render(IDWriteTextLayout *layout) { return layout->Draw(nullptr, this, 0, 0); }

private:
  STDMETHODIMP QueryInterface(REFIID iid, void **object) override {
    const bool known =
        iid == __uuidof(IUnknown) || iid == __uuidof(IDWritePixelSnapping) || iid == __uuidof(IDWriteTextRenderer);
    *object = known ? static_cast<IDWriteTextRenderer *>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP IsPixelSnappingDisabled(void *, BOOL *disabled) override {
    *disabled = FALSE;
    return S_OK;
  }
  STDMETHODIMP GetCurrentTransform(void *, DWRITE_MATRIX *transform) override {
    *transform = {1, 0, 0, 1, 0, 0};
    return S_OK;
  }
  STDMETHODIMP GetPixelsPerDip(void *, FLOAT *pixels) override {
    *pixels = 1;
    return S_OK;
  }

  STDMETHODIMP DrawGlyphRun(void *, FLOAT, FLOAT, DWRITE_MEASURING_MODE, const DWRITE_GLYPH_RUN *run,
                            const DWRITE_GLYPH_RUN_DESCRIPTION *description, IUnknown *) override try {
    draw(*run, *description);
    return S_OK;
  } catch (...) { // must not cross the platform's frames; only a lack of memory raises here
    return E_OUTOFMEMORY;
  }
  STDMETHODIMP DrawUnderline(void *, FLOAT, FLOAT, const DWRITE_UNDERLINE *, IUnknown *) override { return S_OK; }
  STDMETHODIMP DrawStrikethrough(void *, FLOAT, FLOAT, const DWRITE_STRIKETHROUGH *, IUnknown *) override {
    return S_OK;
  }
  STDMETHODIMP DrawInlineObject(void *, FLOAT, FLOAT, IDWriteInlineObject *, BOOL, BOOL, IUnknown *) override {
    return S_OK;
  }

  Draw draw;
};

} // namespace

/// Borrowed from the layout for the time of one call.
struct EditTextElement::Run {
  const DWRITE_GLYPH_RUN &glyphs;
  const DWRITE_GLYPH_RUN_DESCRIPTION &text;

  std::size_t Start() const { return text.textPosition; }
  std::size_t Length() const { return text.stringLength; }
  bool IsRightToLeft() const { return (glyphs.bidiLevel & 1U) != 0; }

  /// The first glyph of `character`, counted from the run's start; characters that share one are drawn as a whole.
  std::size_t Cluster(std::size_t character) const { return text.clusterMap[character]; }

  /// The next character after `character` that has glyphs of its own.
  std::size_t EndOfCluster(std::size_t character) const {
    std::size_t end = character + 1;
    while (end < Length() && Cluster(end) == Cluster(character))
      ++end;
    return end;
  }
};

EditTextElement::EditTextElement(RenderTargetPtr renderTarget, BrushPtr highlightBrush, BrushPtr highlightTextBrush)
    : TextElement(std::move(renderTarget)), highlightBrush(std::move(highlightBrush)),
      highlightTextBrush(std::move(highlightTextBrush)) {}

// Whatever may fail comes before the first change: a reading is never kept beside the layout of another text.
void EditTextElement::Show(EditReading newReading) {
  LayoutPtr newLayout = newReading.text == reading.text ? layout : CreateLayout(Drawable(newReading.text));
  Text.Set(newReading.text);
  layout = std::move(newLayout);
  reading = std::move(newReading);
}

void EditTextElement::Update() {
  TextElement::Update();
  if (!IsUpdating())
    layout = CreateLayout(Drawable(reading.text));
}

// A character reaches to the next one of its run. The one at the run's end has its own width: what follows may be
// anywhere.
EditTextElement::Cell EditTextElement::CellInRun(const Run &run, std::size_t index) const {
  const long edge = reading.positions[index];
  const long width = reading.widths[index];
  const bool last = index + 1 == run.Start() + run.Length();
  if (!run.IsRightToLeft()) {
    const long next = last ? edge : reading.positions[index + 1];
    return {edge, next > edge ? next : edge + (last ? width : 0)};
  }
  if (!last) {
    const long left = reading.positions[index + 1];
    return {left, edge > left ? edge : left + width};
  }
  // Of a text's first character a control may return where the line begins instead of the leading edge.
  return index == 0 && edge <= reading.lineStart ? Cell{edge, edge + width} : Cell{edge - width, edge};
}

void EditTextElement::Paint(RenderTargetPtr, const D2D1_RECT_F *rect) {
  if (brush == nullptr || layout == nullptr)
    return; // never updated
  const D2D1_POINT_2F origin{rect->left - static_cast<float>(Left.Get()), rect->top - static_cast<float>(Top.Get())};
  cells.assign(reading.text.size(), {});
  DrawRuns(origin, brush.Get());
  if (reading.selectionStart != reading.selectionEnd)
    DrawSelection(origin);
}

// Runs that can't be drawn are missing in the picture: a failure that was raised here would leave the clips of the
// field and of the selection behind.
void EditTextElement::DrawRuns(D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) {
  RunRenderer renderer([&](const DWRITE_GLYPH_RUN &glyphs, const DWRITE_GLYPH_RUN_DESCRIPTION &text) {
    const Run run{glyphs, text};
    for (std::size_t i = run.Start(); i < run.Start() + run.Length(); ++i)
      cells[i] = CellInRun(run, i);
    if (glyphs.glyphCount != 0 && run.Length() != 0)
      DrawRun(run, origin, glyphBrush);
  });
  if (const HRESULT result = renderer.Render(layout.Get()); FAILED(result))
    LogError("EditTextElement: can't draw the text, error %x", static_cast<unsigned>(result));
}

void EditTextElement::DrawRun(const Run &run, D2D1_POINT_2F origin, ID2D1Brush *glyphBrush) const {
  const std::vector<float> advances = PlacedAdvances(run);
  DWRITE_GLYPH_RUN glyphs = run.glyphs;
  glyphs.glyphAdvances = advances.data();
  const Cell &first = cells[run.Start() + (run.IsRightToLeft() ? run.EndOfCluster(0) - 1 : 0)];
  const float start = static_cast<float>(first.left) + (run.IsRightToLeft() ? advances[0] : 0);
  const auto baseline = static_cast<float>(reading.top + reading.ascent);
  renderTarget->DrawGlyphRun({origin.x + start, origin.y + baseline}, &glyphs, glyphBrush,
                             DWRITE_MEASURING_MODE_NATURAL);
}

// The pen moves by each glyph's advance, before the glyph in a run from right to left, behind it otherwise. The
// advances are changed so that every cluster's left edge comes to lie where the control has it, on a whole pixel; the
// glyphs of a cluster keep their distances.
std::vector<float> EditTextElement::PlacedAdvances(const Run &run) const {
  const bool rightToLeft = run.IsRightToLeft();
  std::vector<float> advances(run.glyphs.glyphAdvances, run.glyphs.glyphAdvances + run.glyphs.glyphCount);
  if (rightToLeft)
    advances[0] = std::round(advances[0]); // the pen starts that far right of the first glyph
  std::size_t character = run.EndOfCluster(0);
  for (std::size_t former = 0; character < run.Length();
       former = std::exchange(character, run.EndOfCluster(character))) {
    const std::size_t formerLast = rightToLeft ? character - 1 : former;
    const std::size_t thisLast = rightToLeft ? run.EndOfCluster(character) - 1 : character;
    float distance = static_cast<float>(cells[run.Start() + thisLast].left - cells[run.Start() + formerLast].left);
    const std::size_t formerGlyph = run.Cluster(former);
    const std::size_t glyph = run.Cluster(character);
    if (formerGlyph >= glyph || glyph >= advances.size())
      break;
    if (rightToLeft) {
      for (std::size_t i = formerGlyph + 1; i < glyph; ++i)
        distance += advances[i];
      advances[glyph] = -distance;
    } else {
      for (std::size_t i = formerGlyph; i + 1 < glyph; ++i)
        distance -= advances[i];
      advances[glyph - 1] = distance;
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

// The selected part is drawn a second time, over its highlight.
void EditTextElement::DrawSelection(D2D1_POINT_2F origin) {
  for (const Cell &cell : SelectedCells()) {
    const D2D1_RECT_F area{origin.x + static_cast<float>(cell.left), origin.y + static_cast<float>(reading.top),
                           origin.x + static_cast<float>(cell.right),
                           origin.y + static_cast<float>(reading.top + reading.height)};
    renderTarget->PushAxisAlignedClip(&area, D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
    renderTarget->FillRectangle(&area, highlightBrush.Get());
    DrawRuns(origin, highlightTextBrush.Get());
    renderTarget->PopAxisAlignedClip();
  }
}

} // namespace lumenor
