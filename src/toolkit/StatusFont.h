#pragma once
// The system's status font, in which the toolkit writes everything. Any thread.

#include <dwrite.h>
#include <wrl/client.h>

#include "system/Windows.h"

namespace lumenor {

/// The process's shared DirectWrite factory, a new reference. Raises HResultError.
Microsoft::WRL::ComPtr<IDWriteFactory> CreateTextFactory();

/// The status font of the system's non-client metrics. Raises HResultError.
LOGFONTW GetStatusFont();

/// A text format in the status font's family, `size` in device-independent units, vertically centred. Raises
/// HResultError.
Microsoft::WRL::ComPtr<IDWriteTextFormat> CreateStatusTextFormat(IDWriteFactory *factory, DWRITE_FONT_WEIGHT weight,
                                                                 DWRITE_FONT_STYLE style, DWRITE_FONT_STRETCH stretch,
                                                                 float size);

} // namespace lumenor
