#pragma once
// Text turned into glyphs, run by run, so that its owner can decide where each glyph goes. User-interface thread.

#include <cstddef>
#include <string>
#include <vector>

#include "system/Windows.h"

#include <dwrite.h>
#include <wrl/client.h>

namespace lumenor {

/// Glyphs of one font that are drawn in one direction.
struct GlyphRun {
  /// The characters of the text that the run stands for.
  std::size_t start = 0;
  std::size_t length = 0;
  bool rightToLeft = false;

  /// For each of these characters the first of its glyphs; characters that share one are drawn as a whole.
  std::vector<UINT16> clusters;

  Microsoft::WRL::ComPtr<IDWriteFontFace> face;
  float size = 0;
  BOOL sideways = FALSE;

  // In the order of the characters, also in a run from right to left.
  std::vector<UINT16> glyphs;
  std::vector<float> advances;
  std::vector<DWRITE_GLYPH_OFFSET> offsets;
};

/// The glyph runs of `text`, which must be of one line, in `format`. Raises HResultError.
std::vector<GlyphRun> ShapeText(const std::wstring &text, IDWriteTextFormat *format);

} // namespace lumenor
