#pragma once
// The bar's drop target: it passes the platform's calls on to the bar's window as notifications, and takes dropped
// files apart. It serves drags of files and of the bar's own buttons, which are those during which
// `draggedButton` is set. Lives by its references: the bar's and, as long as it is registered, the platform's.
// User-interface thread.

#include <wrl/client.h>

#include "system/ComObject.h"
#include "system/Windows.h"

#include <shellapi.h>
#include <shobjidl.h>

namespace lumenor {

class CDropTarget : public ComObject<IDropTarget> {
public:
  /// `window` is the bar's. Raises HResultError when the platform has no helper for drag pictures.
  explicit CDropTarget(HWND window);

  HRESULT STDMETHODCALLTYPE DragEnter(IDataObject *data, DWORD keyState, POINTL point, DWORD *effect) noexcept override;
  HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD *effect) noexcept override;
  HRESULT STDMETHODCALLTYPE DragLeave() noexcept override;

  /// `effect` is always 0: the source has nothing left to do.
  HRESULT STDMETHODCALLTYPE Drop(IDataObject *data, DWORD keyState, POINTL point, DWORD *effect) noexcept override;

  /// True between a drag's entry and its leaving or dropping. Stays true when the program that drags dies.
  bool IsInDrag() const { return inDrag; }

private:
  ~CDropTarget() override = default;

  bool ComputeEffect(DWORD keyState, DWORD &effect) const;
  HRESULT Take(IDataObject &data, POINTL point) const;
  void AddDroppedFiles(HGLOBAL files, POINTL point) const;
  void Notify(UINT code, UINT_PTR idFrom) const;

  bool acceptsData = false;
  HWND window;
  Microsoft::WRL::ComPtr<IDropTargetHelper> helper;
  bool inDrag = false;
};

} // namespace lumenor
