#pragma once
// The size that a picture claims, read from its first bytes: before a decoder, which may take memory and time for what
// is claimed, sees it. Any thread.

#include <optional>

#include "system/Windows.h"

#include <objidl.h>

namespace lumenor {

/// In pixels.
struct PictureSize {
  UINT width = 0;
  UINT height = 0;

  bool operator==(const PictureSize &other) const = default;
};

/// The size that the PNG, BMP, GIF or JPEG in `stream`, or the first picture of the icon in it, claims; empty for all
/// else and for what breaks off before its size. A GIF with a frame that isn't bearable, or with frames that aren't all
/// together, claims a size that isn't. Leaves the stream's position anywhere.
std::optional<PictureSize> ClaimedSize(IStream *stream);

/// Whether a picture of this size may be decoded: it has no more pixels than one of 4096 by 4096 and no side above
/// 32768. Buttons show 48 by 48 of it.
bool IsBearable(PictureSize size);

} // namespace lumenor
