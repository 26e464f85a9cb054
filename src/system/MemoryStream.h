#pragma once
// A stream in memory: what the platform writes to it goes to the disk in one piece. Any thread, each its own streams.

#include <string>

#include <wrl/client.h>

#include "system/Windows.h"

namespace lumenor {

/// A new, empty stream. Raises HResultError.
Microsoft::WRL::ComPtr<IStream> MakeMemoryStream();

/// A stream of its own copy of `bytes`, positioned at their beginning. Raises HResultError.
Microsoft::WRL::ComPtr<IStream> MakeMemoryStream(const std::string &bytes);

/// All that the stream holds; its position is then at its end. Raises HResultError.
std::string BytesOf(IStream *stream);

} // namespace lumenor
