#pragma once
// Design pixels, at 96 dots per inch, to device pixels of the screen. User-interface thread.

namespace lumenor {

/// `designPixels` across in device pixels, rounded to the nearest. The screen's dots per inch are read at the first
/// call and never again; when no device context could be had they stay 0, and so does every result.
int ScaleX(int designPixels);

/// The same for a vertical measure.
int ScaleY(int designPixels);

} // namespace lumenor
