#pragma once
// Builds an application's jump list and publishes it, to be kept in a file (JumpListFile.h). A published list stays as
// it is until the next is committed. One thread.
//
// Documented errors: E_UNEXPECTED for an ID after BeginList, and here for every other call at the wrong time as well;
// 0x80040F03 for a file that the application isn't registered for. A second AddUserTasks is undocumented; Windows has
// been seen to return ERROR_ALREADY_EXISTS. So are invalid arguments, which get E_INVALIDARG, or E_POINTER when the
// result's place is missing. Tasks that are shell items, which the platform accepts, are refused, since no program here
// publishes any. No user removes anything from these lists, so there are no removed destinations.

#include <optional>
#include <string>

#include <shobjidl.h>

#include "JumpListFile.h"
#include "ServiceObject.h"

namespace lumenor::services {

class DestinationList : public ServiceObject<DestinationList, ICustomDestinationList> {
public:
  HRESULT STDMETHODCALLTYPE SetAppID(LPCWSTR id) noexcept override;
  HRESULT STDMETHODCALLTYPE BeginList(UINT *slots, REFIID id, void **removed) noexcept override;
  HRESULT STDMETHODCALLTYPE AppendCategory(LPCWSTR name, IObjectArray *destinations) noexcept override;
  HRESULT STDMETHODCALLTYPE AppendKnownCategory(KNOWNDESTCATEGORY category) noexcept override;
  HRESULT STDMETHODCALLTYPE AddUserTasks(IObjectArray *tasks) noexcept override;
  HRESULT STDMETHODCALLTYPE CommitList() noexcept override;
  HRESULT STDMETHODCALLTYPE GetRemovedDestinations(REFIID id, void **removed) noexcept override;
  HRESULT STDMETHODCALLTYPE DeleteList(LPCWSTR id) noexcept override;
  HRESULT STDMETHODCALLTYPE AbortList() noexcept override;

private:
  /// What was added since BeginList.
  struct Unfinished {
    JumpListBlocks categories;
    JumpListBlocks tasks; // empty: none were added
  };

  std::wstring ApplicationId() const;

  std::wstring applicationId; // empty: the process's own
  std::optional<Unfinished> list;
};

} // namespace lumenor::services
