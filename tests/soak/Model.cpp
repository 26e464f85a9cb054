#include "soak/Model.h"

namespace lumenor::soak {
namespace {

constexpr int factoryButtons = 8; // more than the row has room for
constexpr wchar_t top[] = L"Top";
constexpr wchar_t bottom[] = L"Bottom";

} // namespace

bool Model::IsAtTop() const { return edge == top; }

void Model::ChangeEdge() { edge = IsAtTop() ? bottom : top; }

void Model::BeginAgain() {
  isToggledToTop = IsAtTop();
  provider = 0;
  text.clear();
  open = List::None;
  isForYouSeen = true;
}

bool Model::IsUsual() const {
  return row.size() == factoryButtons && IsAtTop() && !isSmallDisplay && open == List::None && entriesForYou == 1 &&
         isForYouSeen;
}

std::vector<std::wstring> FactoryRow() {
  std::vector<std::wstring> row;
  for (int i = 0; i < factoryButtons; ++i)
    row.push_back(L"User " + std::to_wstring(i));
  return row;
}

} // namespace lumenor::soak
