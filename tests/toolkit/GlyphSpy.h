#pragma once
// Hears what text a render target is asked to draw, while it lives; it is still drawn.

#include <string>
#include <vector>

#include "support/OperationSpy.h"
#include "system/Windows.h"

#include <d2d1.h>

namespace lumenor::tests {

/// A glyph run as it was drawn, in pixels of the target.
struct DrawnRun {
  float baseline;
  float size;
  bool rightToLeft;
  std::vector<float> lefts; // of every glyph
  D2D1_COLOR_F color;
};

/// One at a time.
class GlyphSpy {
public:
  explicit GlyphSpy(ID2D1RenderTarget *target);

  /// Forgets what was heard.
  void Clear();

  /// What was drawn as whole texts; empty for those that were laid out before this lived.
  static const std::vector<std::wstring> &Texts();

  /// What was drawn as glyph runs.
  static const std::vector<DrawnRun> &Runs();

  /// How many solid brushes were made.
  static int Brushes();

private:
  OperationSpy factorySpy;
  OperationSpy spy;
};

} // namespace lumenor::tests
