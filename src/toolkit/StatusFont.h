#pragma once
// The system's status font, in which the toolkit writes everything. Any thread.

#include "system/Windows.h"

#include <dwrite.h>
#include <wrl/client.h>

namespace lumenor {

/// The locale that every text format is made for, whatever the user's is.
constexpr const wchar_t *textLocaleName = L"en";

/// The process's shared DirectWrite factory, a new reference. Raises HResultError.
Microsoft::WRL::ComPtr<IDWriteFactory> CreateTextFactory();

/// The status font of the system's non-client metrics; all zero when the platform reports none.
LOGFONTW GetStatusFont();

/// A text format in the status font's family, `size` in device-independent units, vertically centred. Raises
/// HResultError.
Microsoft::WRL::ComPtr<IDWriteTextFormat> CreateStatusTextFormat(IDWriteFactory *factory, DWRITE_FONT_WEIGHT weight,
                                                                 DWRITE_FONT_STYLE style, DWRITE_FONT_STRETCH stretch,
                                                                 float size);

} // namespace lumenor
