#pragma once
// The record of one entry of the dock: a button, a row of a flyout, an entry of the jump list. A value, copied whole.

#include <cstdint>
#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor {

struct Element {
  std::wstring Head;      // the label
  LONG HeadMaxLength = 0; // 0 means none
  std::wstring ToolTip;
  LONG ToolTipMaxLength = 0; // 0 means none
  std::wstring ActionType;   // "url", "exe", "eccategory", "pillar", "xml" or "helpSearch"
  std::wstring ActionParams;
  std::wstring ActionParamsBackup; // kept by stubs and files, never read from a document
  std::wstring Image;              // the name of the picture
  std::wstring Spare1;             // these two are always empty
  std::wstring Spare2;
  std::uint32_t Position = 0;

  bool operator==(const Element &) const = default;
};

/// Entries in display order.
using ElementList = std::vector<Element>;

} // namespace lumenor
