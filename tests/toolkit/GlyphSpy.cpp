#include "toolkit/GlyphSpy.h"

#include <cstddef>

#include <dwrite.h>

namespace lumenor::tests {

namespace {

/// The places of operations in ID2D1RenderTarget.
enum : std::size_t {
  createSolidColorBrushSlot = 8,
  drawTextSlot = 27,
  drawGlyphRunSlot = 29,
};

using DrawTextCall = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const WCHAR *, UINT32, IDWriteTextFormat *,
                                               const D2D1_RECT_F *, ID2D1Brush *, D2D1_DRAW_TEXT_OPTIONS,
                                               DWRITE_MEASURING_MODE);
using DrawGlyphRunCall = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, D2D1_POINT_2F, const DWRITE_GLYPH_RUN *,
                                                   ID2D1Brush *, DWRITE_MEASURING_MODE);
using CreateBrushCall = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_COLOR_F *,
                                                     const D2D1_BRUSH_PROPERTIES *, ID2D1SolidColorBrush **);

std::vector<std::wstring> texts;
std::vector<DrawnRun> runs;
int brushes;
DrawTextCall formerDrawText;
DrawGlyphRunCall formerDrawGlyphRun;
CreateBrushCall formerCreateBrush;

void STDMETHODCALLTYPE HearText(ID2D1RenderTarget *target, const WCHAR *text, UINT32 length, IDWriteTextFormat *format,
                                const D2D1_RECT_F *rect, ID2D1Brush *brush, D2D1_DRAW_TEXT_OPTIONS options,
                                DWRITE_MEASURING_MODE mode) {
  texts.emplace_back(text, length);
  formerDrawText(target, text, length, format, rect, brush, options, mode);
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

GlyphSpy::GlyphSpy(ID2D1RenderTarget *target) : spy(target) {
  Clear();
  formerDrawText = spy.Exchange<DrawTextCall>(drawTextSlot, HearText);
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
