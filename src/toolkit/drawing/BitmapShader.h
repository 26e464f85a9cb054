#pragma once
// Shaders make the hover, glow and pressed pictures of a button out of its picture. They are values, kept by whoever
// uses them. Failures of the platform raise HResultError. User-interface thread only.

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// Makes a new picture out of a 32-bit GDI bitmap.
class IBitmapShader {
public:
  virtual ~IBitmapShader() = default;

  /// A new bitmap made from `source`, which is only read.
  virtual BitmapHandle Shade(HBITMAP source) const = 0;
};

/// Adds a number to each colour channel, at 0 and 255 at most, and leaves alpha alone.
class CAdditiveColorShader : public IBitmapShader {
public:
  CAdditiveColorShader(int red, int green, int blue) : red(red), green(green), blue(blue) {}

  BitmapHandle Shade(HBITMAP source) const override;

private:
  int red;
  int green;
  int blue;
};

/// Makes the halo of a picture without the picture: a disc of one colour around every visible pixel, in straight
/// colour, the strongest disc winning. The result is `radius` pixels bigger on every side.
class COuterGlowShader : public IBitmapShader {
public:
  /// `radius` is in pixels; `falloff` is the fraction of strength left after one pixel of distance.
  COuterGlowShader(unsigned char red, unsigned char green, unsigned char blue, int radius, float falloff)
      : red(red), green(green), blue(blue), radius(radius), falloff(falloff) {}

  BitmapHandle Shade(HBITMAP source) const override;

private:
  unsigned char red;
  unsigned char green;
  unsigned char blue;
  int radius;
  float falloff;
};

} // namespace lumenor
