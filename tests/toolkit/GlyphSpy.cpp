#include "toolkit/GlyphSpy.h"

#include <cstddef>
#include <map>

#include <dwrite.h>

#include "toolkit/StatusFont.h"

namespace lumenor::tests {

namespace {

/// The places of operations in ID2D1RenderTarget, and of the last one in IDWriteFactory.
enum : std::size_t {
  createSolidColorBrushSlot = 8,
  drawTextLayoutSlot = 28,
  drawGlyphRunSlot = 29,
  createTextLayoutSlot = 18,
};

using CreateLayoutCall = HRESULT(STDMETHODCALLTYPE *)(IDWriteFactory *, const WCHAR *, UINT32, IDWriteTextFormat *,
                                                      FLOAT, FLOAT, IDWriteTextLayout **);
using DrawLayoutCall = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, D2D1_POINT_2F, IDWriteTextLayout *, ID2D1Brush *,
                                                 D2D1_DRAW_TEXT_OPTIONS);
using DrawGlyphRunCall = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, D2D1_POINT_2F, const DWRITE_GLYPH_RUN *,
                                                   ID2D1Brush *, DWRITE_MEASURING_MODE);
using CreateBrushCall = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_COLOR_F *,
                                                     const D2D1_BRUSH_PROPERTIES *, ID2D1SolidColorBrush **);

std::map<IDWriteTextLayout *, std::wstring> textOfLayout; // a layout doesn't tell it
std::vector<std::wstring> texts;
std::vector<DrawnRun> runs;
int brushes;
CreateLayoutCall formerCreateLayout;
DrawLayoutCall formerDrawLayout;
DrawGlyphRunCall formerDrawGlyphRun;
CreateBrushCall formerCreateBrush;

HRESULT STDMETHODCALLTYPE HearNewLayout(IDWriteFactory *factory, const WCHAR *text, UINT32 length,
                                        IDWriteTextFormat *format, FLOAT width, FLOAT height,
                                        IDWriteTextLayout **layout) {
  const HRESULT result = formerCreateLayout(factory, text, length, format, width, height, layout);
  if (SUCCEEDED(result))
    textOfLayout[*layout] = std::wstring(text, length);
  return result;
}

void STDMETHODCALLTYPE HearLayout(ID2D1RenderTarget *target, D2D1_POINT_2F origin, IDWriteTextLayout *layout,
                                  ID2D1Brush *brush, D2D1_DRAW_TEXT_OPTIONS options) {
  texts.push_back(textOfLayout[layout]);
  formerDrawLayout(target, origin, layout, brush, options);
}

void STDMETHODCALLTYPE HearGlyphRun(ID2D1RenderTarget *target, D2D1_POINT_2F origin, const DWRITE_GLYPH_RUN *run,
                                    ID2D1Brush *brush, DWRITE_MEASURING_MODE mode) {
  DrawnRun drawn{origin.y, run->fontEmSize, (run->bidiLevel & 1U) != 0, {}, {}};
  float pen = origin.x;
  for (UINT32 i = 0; i < run->glyphCount; ++i) {
    pen -= drawn.rightToLeft ? run->glyphAdvances[i] : 0;
    drawn.lefts.push_back(pen);
    pen += drawn.rightToLeft ? 0 : run->glyphAdvances[i];
  }
  static_cast<ID2D1SolidColorBrush *>(brush)->GetColor(&drawn.color);
  runs.push_back(drawn);
  formerDrawGlyphRun(target, origin, run, brush, mode);
}

HRESULT STDMETHODCALLTYPE HearBrush(ID2D1RenderTarget *target, const D2D1_COLOR_F *color,
                                    const D2D1_BRUSH_PROPERTIES *properties, ID2D1SolidColorBrush **brush) {
  ++brushes;
  return formerCreateBrush(target, color, properties, brush);
}

} // namespace

GlyphSpy::GlyphSpy(ID2D1RenderTarget *target) : factorySpy(CreateTextFactory().Get()), spy(target) {
  Clear();
  textOfLayout.clear();
  formerCreateLayout = factorySpy.Exchange<CreateLayoutCall>(createTextLayoutSlot, HearNewLayout);
  formerDrawLayout = spy.Exchange<DrawLayoutCall>(drawTextLayoutSlot, HearLayout);
  formerDrawGlyphRun = spy.Exchange<DrawGlyphRunCall>(drawGlyphRunSlot, HearGlyphRun);
  formerCreateBrush = spy.Exchange<CreateBrushCall>(createSolidColorBrushSlot, HearBrush);
}

void GlyphSpy::Clear() {
  texts.clear();
  runs.clear();
  brushes = 0;
}

const std::vector<std::wstring> &GlyphSpy::Texts() { return texts; }

const std::vector<DrawnRun> &GlyphSpy::Runs() { return runs; }

int GlyphSpy::Brushes() { return brushes; }

} // namespace lumenor::tests
