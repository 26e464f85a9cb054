#pragma once
// Making the painter of a button when the picture of its element can't be decoded. User-interface thread.

#include <string>
#include <utility>

#include "system/HResultError.h"
#include "system/Log.h"

namespace lumenor {

/// Names no file, so that the built-in picture is shown. It has a folder, which keeps the names of its shaded pictures
/// apart from those of others.
inline constexpr wchar_t defaultPicture[] = L".\\IDI_DEFAULT";

/// What `make` makes with `image`. Where it raises HResultError, since the picture is damaged, a folder, a device or
/// the like, what it makes with the built-in picture, and a line in the log that begins with `subject`. A failure of
/// that is passed on.
template <typename Make> auto MakeWithPicture(const char *subject, const std::wstring &image, Make &&make) {
  try {
    return make(image);
  } catch (const HResultError &error) {
    LogError("%s: can't show %S, error %x, loading default image", subject, image.c_str(),
             static_cast<unsigned>(error.Result()));
  }
  return make(std::wstring(defaultPicture));
}

} // namespace lumenor
