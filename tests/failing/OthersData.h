#pragma once
// What another program lets the user drag: the methods of this class are made to fail like the platform's. Those of the
// dock's own data aren't.

#include <string>

#include <wrl/client.h>

#include "dock/dragdrop/DragObjects.h"
#include "system/ComObject.h"

namespace lumenor::failing {

/// A list with one file.
class OthersData : public ComObject<IDataObject> {
public:
  explicit OthersData(const std::wstring &path) : data(MakeFileData({path})) {}

  HRESULT STDMETHODCALLTYPE GetData(FORMATETC *format, STGMEDIUM *medium) noexcept override {
    return data->GetData(format, medium);
  }
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC *, STGMEDIUM *) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC *format) noexcept override { return data->QueryGetData(format); }
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC *, FORMATETC *) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC *format, STGMEDIUM *medium, BOOL release) noexcept override {
    return data->SetData(format, medium, release);
  }
  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC **formats) noexcept override {
    return data->EnumFormatEtc(direction, formats);
  }
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC *, DWORD, IAdviseSink *, DWORD *) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA **) noexcept override { return E_NOTIMPL; }

private:
  ~OthersData() override = default;

  const Microsoft::WRL::ComPtr<CDataObject> data;
};

} // namespace lumenor::failing
