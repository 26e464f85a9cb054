#pragma once
// The record of one entry of the dock: a button, a row of a flyout, an entry of the jump list. A value, copied whole.

#include <cstdint>
#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor {

/// The words of `Element::ActionType`, compared with their case, and what `ActionParams` is with each.
inline constexpr wchar_t urlAction[] = L"url";               // an address, opened as it stands
inline constexpr wchar_t programAction[] = L"exe";           // a command line
inline constexpr wchar_t categoryAction[] = L"eccategory";   // a category of the main application
inline constexpr wchar_t pillarAction[] = L"pillar";         // the decimal index of one of its pillars
inline constexpr wchar_t flyoutAction[] = L"xml";            // the name of the document that the flyout lists
inline constexpr wchar_t helpSearchAction[] = L"helpSearch"; // nothing; of search providers only

struct Element {
  std::wstring Head;      // the label
  LONG HeadMaxLength = 0; // 0 means none
  std::wstring ToolTip;
  LONG ToolTipMaxLength = 0; // 0 means none
  std::wstring ActionType;   // one of the words above
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
