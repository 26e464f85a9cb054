#pragma once
// The system's status font, in which the toolkit writes everything. Any thread.

#include "system/Windows.h"

#include <dwrite.h>
#include <wrl/client.h>

namespace lumenor {

/// The process's shared DirectWrite factory, a new reference. Raises HResultError.
Microsoft::WRL::ComPtr<IDWriteFactory> CreateTextFactory();

/// The status font of the system's non-client metrics; all zero when the platform reports none.
LOGFONTW GetStatusFont();

} // namespace lumenor
