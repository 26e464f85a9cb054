#pragma once
// Builds an application's jump list and publishes it, to be kept in a file (JumpListFile.h). A published list stays as
// it is until the next is committed. One thread.
//
// What is documented: an id that comes after the beginning, E_UNEXPECTED, which is the answer to every other call at
// the wrong time here as well; a file that the application isn't registered for, 0x80040F03. For tasks that come a
// second time nothing is documented, but Windows has been seen to answer ERROR_ALREADY_EXISTS. Nor is it for arguments
// that make no sense: E_INVALIDARG, and E_POINTER where there is no place for an answer. Tasks that are shell items,
// which the platform would take, are refused: nobody publishes any here. Nor does anybody remove anything from a list
// that is kept here, so there are no removed destinations.

#include <optional>
#include <string>

#include <shobjidl.h>

#include "ComObject.h"
#include "JumpListFile.h"

namespace lumenor::services {

class DestinationList : public ComObject<DestinationList, ICustomDestinationList> {
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
  /// What was added since the list was begun.
  struct Unfinished {
    JumpListBlocks categories;
    JumpListBlocks tasks; // empty: none were added
  };

  std::wstring ApplicationId() const;

  std::wstring applicationId; // empty: the process's own
  std::optional<Unfinished> list;
};

} // namespace lumenor::services
