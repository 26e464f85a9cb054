#include "system/MemoryStream.h"

#include "system/HResultError.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {

ComPtr<IStream> MakeMemoryStream() {
  ComPtr<IStream> stream;
  ThrowIfFailed(::CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  return stream;
}

ComPtr<IStream> MakeMemoryStream(const std::string &bytes) {
  ComPtr<IStream> stream = MakeMemoryStream();
  ULONG written = 0;
  ThrowIfFailed(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written));
  ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  return stream;
}

std::string BytesOf(IStream *stream) {
  STATSTG state{};
  ThrowIfFailed(stream->Stat(&state, STATFLAG_NONAME));
  ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  std::string bytes(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
  ULONG read = 0;
  ThrowIfFailed(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
  bytes.resize(read);
  return bytes;
}

} // namespace lumenor
