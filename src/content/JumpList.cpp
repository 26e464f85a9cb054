#include "content/JumpList.h"

#include <wrl/client.h>

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "content/ElementAction.h"
#include "content/TaskLink.h"
#include "system/HResultError.h"
#include "system/ImagePath.h"
#include "system/Launch.h"
#include "system/Log.h"
#include "system/Paths.h"

#include <shobjidl.h>

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

/// What starts the task. An address is left out later, since it is no file.
CommandLine CommandOf(const Element &task) {
  if (task.ActionType == categoryAction)
    return {MainAppPath(), CategoryArguments(task.ActionParams)};
  if (task.ActionType == pillarAction)
    return {MainAppPath(), PillarArguments(task.ActionParams)};
  return SplitCommandLine(task.ActionParams);
}

/// Empty when none of `jumpListElements` has the position.
std::wstring IconAt(std::uint32_t position, const ElementList &jumpListElements) {
  std::wstring icon;
  for (const Element &element : jumpListElements)
    if (element.Position == position)
      icon = ResolveImagePath(element.Image);
  return icon;
}

void AddTask(IObjectCollection *collection, const Element &task, const ElementList &jumpListElements) {
  const auto [path, arguments] = CommandOf(task);
  const std::wstring icon = IconAt(task.Position, jumpListElements);
  ComPtr<IShellLinkW> link;
  if (!FileExists(path))
    LogError("Jumplist: Unable to add %S %S because it doesn't exist", path.c_str(), arguments.c_str());
  else if (FAILED(CreateTaskLink(path, arguments, task, link, icon)))
    LogError("Jumplist: Unable to add %S %S", path.c_str(), arguments.c_str());
  else
    ThrowIfFailed(collection->AddObject(link.Get()));
}

ComPtr<IObjectCollection> MakeCollection() {
  ComPtr<IObjectCollection> collection;
  ThrowIfFailed(::CoCreateInstance(CLSID_EnumerableObjectCollection, nullptr,
                                   CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER, IID_PPV_ARGS(&collection)));
  return collection;
}

/// The shell refuses an empty list of tasks.
void AddUserTasks(ICustomDestinationList *destinationList, IObjectCollection *collection) {
  UINT count = 0;
  ThrowIfFailed(collection->GetCount(&count));
  if (count == 0)
    return;
  ComPtr<IObjectArray> tasks;
  ThrowIfFailed(collection->QueryInterface(IID_PPV_ARGS(&tasks)));
  ThrowIfFailed(destinationList->AddUserTasks(tasks.Get()));
}

ComPtr<ICustomDestinationList> BeginDestinationList() {
  ComPtr<ICustomDestinationList> list;
  LogInfo("Jumplist: Co-creating destination list");
  ThrowIfFailed(::CoCreateInstance(CLSID_DestinationList, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&list)));
  LogInfo("Jumplist: Setting APP_ID");
  ThrowIfFailed(list->SetAppID(applicationUserModelId));
  LogInfo("Jumplist: Beginning list");
  UINT slots = 0;
  ComPtr<IObjectArray> removed; // of no use: the user can remove entries of categories only, and these are tasks
  ThrowIfFailed(list->BeginList(&slots, IID_PPV_ARGS(&removed)));
  return list;
}

/// The entries of the last flyout that the main document names, then the user's buttons.
ElementList LoadTasks(const ElementList &mainElements) {
  ElementList tasks = LoadDocument(userDocumentName, false);
  ElementList flyout;
  for (const Element &element : mainElements) {
    if (element.ActionType == flyoutAction) {
      LogInfo("Jumplist: Add tasks");
      flyout = LoadDocument(element.ActionParams, false);
    }
  }
  tasks.insert(tasks.begin(), flyout.begin(), flyout.end());
  return tasks;
}

} // namespace

HRESULT CreateJumpList(const ElementList &mainElements, const ElementList &jumpListElements) {
  return HResultOf([&] {
    const ComPtr<ICustomDestinationList> list = BeginDestinationList();
    const ElementList tasks = LoadTasks(mainElements);
    LogInfo("Jumplist: Add tasks");
    ThrowIfFailed(AddJumpListTasks(list.Get(), tasks, jumpListElements));
    LogInfo("Jumplist: Commit list");
    ThrowIfFailed(list->CommitList());
  });
}

HRESULT AddJumpListTasks(ICustomDestinationList *destinationList, const ElementList &tasks,
                         const ElementList &jumpListElements) {
  if (tasks.empty())
    return S_OK;
  return HResultOf([&] {
    const ComPtr<IObjectCollection> collection = MakeCollection();
    for (const Element &task : tasks)
      AddTask(collection.Get(), task, jumpListElements);
    AddUserTasks(destinationList, collection.Get());
  });
}

} // namespace lumenor
