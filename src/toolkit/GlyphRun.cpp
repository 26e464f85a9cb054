#include "toolkit/GlyphRun.h"

#include <utility>

#include "system/HResultError.h"
#include "toolkit/StatusFont.h"

namespace lumenor {

namespace {

constexpr float unbounded = 2147483648.0F;

template <typename T> std::vector<T> Copy(const T *first, UINT32 count) {
  return first == nullptr ? std::vector<T>(count) : std::vector<T>(first, first + count);
}

GlyphRun CopyRun(const DWRITE_GLYPH_RUN &run, const DWRITE_GLYPH_RUN_DESCRIPTION &description) {
  GlyphRun copy;
  copy.start = description.textPosition;
  copy.length = description.stringLength;
  copy.rightToLeft = (run.bidiLevel & 1U) != 0;
  copy.clusters = Copy(description.clusterMap, description.stringLength);
  copy.face = run.fontFace;
  copy.size = run.fontEmSize;
  copy.sideways = run.isSideways;
  copy.glyphs = Copy(run.glyphIndices, run.glyphCount);
  copy.advances = Copy(run.glyphAdvances, run.glyphCount);
  copy.offsets = Copy(run.glyphOffsets, run.glyphCount);
  return copy;
}

/// Takes the runs of a layout down instead of drawing them. Lives on the stack of the one call that it is lent to, so
/// its references aren't counted.
class RunCollector : private IDWriteTextRenderer {
public:
  virtual ~RunCollector() = default;

  /// Draws on nothing, into `runs`.
  HRESULT Collect(IDWriteTextLayout *layout) { return layout->Draw(nullptr, this, 0, 0); }

  std::vector<GlyphRun> runs;

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
    runs.push_back(CopyRun(*run, *description));
    return S_OK;
  } catch (...) { // none may cross the platform's frames, and there is no other than for want of memory
    return E_OUTOFMEMORY;
  }
  STDMETHODIMP DrawUnderline(void *, FLOAT, FLOAT, const DWRITE_UNDERLINE *, IUnknown *) override { return S_OK; }
  STDMETHODIMP DrawStrikethrough(void *, FLOAT, FLOAT, const DWRITE_STRIKETHROUGH *, IUnknown *) override {
    return S_OK;
  }
  STDMETHODIMP DrawInlineObject(void *, FLOAT, FLOAT, IDWriteInlineObject *, BOOL, BOOL, IUnknown *) override {
    return S_OK;
  }
};

} // namespace

std::vector<GlyphRun> ShapeText(const std::wstring &text, IDWriteTextFormat *format) {
  Microsoft::WRL::ComPtr<IDWriteTextLayout> layout;
  ThrowIfFailed(CreateTextFactory()->CreateTextLayout(text.data(), static_cast<UINT32>(text.size()), format, unbounded,
                                                      unbounded, &layout));
  RunCollector collector;
  ThrowIfFailed(collector.Collect(layout.Get()));
  return std::move(collector.runs);
}

} // namespace lumenor
