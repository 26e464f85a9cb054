#include "DestinationList.h"

#include <vector>

#include "JumpListLink.h"
#include "ObjectCollection.h"

using Microsoft::WRL::ComPtr;

namespace lumenor::services {

namespace {

constexpr UINT defaultSlots = 10; // what a user has who never changed it
constexpr std::size_t longestIdentifier = 128;

constexpr HRESULT notRegisteredForFile = static_cast<HRESULT>(0x80040F03U);

/// An application's id has up to 128 characters and no space among them.
bool IsApplicationId(LPCWSTR id) {
  const std::wstring_view text = id == nullptr ? std::wstring_view() : id;
  return !text.empty() && text.size() <= longestIdentifier && text.find(L' ') == std::wstring_view::npos;
}

/// The id that the process has declared, or else its executable.
std::wstring ProcessId() {
  PWSTR declared = nullptr;
  if (SUCCEEDED(::GetCurrentProcessExplicitAppUserModelID(&declared))) {
    std::wstring id = declared;
    ::CoTaskMemFree(declared);
    return id;
  }
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

/// The objects of an array, which has to have some.
template <typename Interface> HRESULT ReadSome(IObjectArray *source, std::vector<ComPtr<Interface>> &objects) {
  const HRESULT result = ReadAll(source, objects);
  return SUCCEEDED(result) && objects.empty() ? E_INVALIDARG : result;
}

bool IsShellItem(IUnknown *object) {
  ComPtr<IShellItem> item;
  return SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&item)));
}

/// A destination is a link with arguments; a file isn't one, since nothing tells what applications are registered for.
HRESULT DescribeDestination(IUnknown *object, JumpListBlock &block) {
  ComPtr<IShellLinkW> link;
  HRESULT result = object->QueryInterface(IID_PPV_ARGS(&link));
  if (FAILED(result))
    return IsShellItem(object) ? notRegisteredForFile : result;
  result = DescribeLink(*link.Get(), "destination", block);
  return SUCCEEDED(result) && !HasArguments(block) ? E_INVALIDARG : result;
}

/// A task is a link, or a separator.
HRESULT DescribeTask(IShellLinkW &link, JumpListBlock &block) {
  if (!IsSeparator(link))
    return DescribeLink(link, "task", block);
  block.kind = "separator";
  return S_OK;
}

} // namespace

std::wstring DestinationList::ApplicationId() const { return applicationId.empty() ? ProcessId() : applicationId; }

HRESULT STDMETHODCALLTYPE DestinationList::SetAppID(LPCWSTR id) noexcept {
  if (list)
    return E_UNEXPECTED;
  if (!IsApplicationId(id))
    return E_INVALIDARG;
  applicationId = id;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE DestinationList::BeginList(UINT *slots, REFIID id, void **removed) noexcept {
  if (slots == nullptr)
    return E_POINTER;
  *slots = defaultSlots;
  const HRESULT result = GetRemovedDestinations(id, removed);
  if (SUCCEEDED(result))
    list.emplace(); // what an earlier beginning had gathered is dropped
  return result;
}

HRESULT STDMETHODCALLTYPE DestinationList::AppendCategory(LPCWSTR name, IObjectArray *destinations) noexcept {
  if (!list)
    return E_UNEXPECTED;
  if (name == nullptr || *name == L'\0')
    return E_INVALIDARG;
  std::vector<ComPtr<IUnknown>> objects;
  HRESULT result = ReadSome(destinations, objects);
  JumpListBlocks added = {{"category", {{"name", name}}}};
  for (std::size_t index = 0; SUCCEEDED(result) && index < objects.size(); ++index)
    result = DescribeDestination(objects[index].Get(), added.emplace_back());
  if (SUCCEEDED(result))
    list->categories.insert(list->categories.end(), added.begin(), added.end());
  return result;
}

HRESULT STDMETHODCALLTYPE DestinationList::AppendKnownCategory(KNOWNDESTCATEGORY category) noexcept {
  if (!list)
    return E_UNEXPECTED;
  if (category != KDC_FREQUENT && category != KDC_RECENT)
    return E_INVALIDARG;
  list->categories.push_back({"known category", {{"name", category == KDC_RECENT ? L"recent" : L"frequent"}}});
  return S_OK;
}

HRESULT STDMETHODCALLTYPE DestinationList::AddUserTasks(IObjectArray *tasks) noexcept {
  if (!list)
    return E_UNEXPECTED;
  if (!list->tasks.empty()) // one list has one group of them
    return HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS);
  std::vector<ComPtr<IShellLinkW>> links;
  HRESULT result = ReadSome(tasks, links);
  JumpListBlocks added;
  for (std::size_t index = 0; SUCCEEDED(result) && index < links.size(); ++index)
    result = DescribeTask(*links[index].Get(), added.emplace_back());
  if (SUCCEEDED(result))
    list->tasks = added;
  return result;
}

HRESULT STDMETHODCALLTYPE DestinationList::CommitList() noexcept {
  if (!list)
    return E_UNEXPECTED;
  JumpListBlocks blocks = list->categories;
  blocks.insert(blocks.end(), list->tasks.begin(), list->tasks.end());
  const HRESULT result = WriteJumpList(ApplicationId(), blocks);
  if (SUCCEEDED(result))
    list.reset(); // a list that couldn't be kept may be committed again
  return result;
}

HRESULT STDMETHODCALLTYPE DestinationList::GetRemovedDestinations(REFIID id, void **removed) noexcept {
  if (removed == nullptr)
    return E_POINTER;
  *removed = nullptr;
  return MakeComObject<ObjectCollection>()->QueryInterface(id, removed);
}

HRESULT STDMETHODCALLTYPE DestinationList::DeleteList(LPCWSTR id) noexcept {
  return DeleteJumpList(id == nullptr ? ApplicationId() : id);
}

HRESULT STDMETHODCALLTYPE DestinationList::AbortList() noexcept {
  if (!list)
    return E_UNEXPECTED;
  list.reset();
  return S_OK;
}

} // namespace lumenor::services
