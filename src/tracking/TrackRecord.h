#pragma once
// One kind of action of the user and how often it happened. A value, copied whole.

#include <cstdint>
#include <string>

#include "system/Windows.h"

namespace lumenor {

struct TrackRecord {
  std::wstring Name = {};
  std::wstring Type = {};
  std::wstring Feature = {};
  std::wstring SubFeature = {};
  std::wstring ActionType = {};
  std::wstring ActionParams = {};
  std::wstring TouchPoint = {};
  std::wstring Action = {};
  std::wstring SessionID = {};
  std::uint32_t SequenceId = 0;
  std::uint32_t SubSessionID = 0; // of the dock's opening and closing only
  std::uint32_t ActionCount = 0;  // of all others only
  SYSTEMTIME TrackTimestamp = {}; // of the first time, UTC
};

} // namespace lumenor
