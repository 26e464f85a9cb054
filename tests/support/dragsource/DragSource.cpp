// Replaces the programs that files are dragged from: drag_source LEFT TOP files PATH... or drag_source LEFT TOP
// text. It shows a window at that place of the screen, and a press of the left button on it begins a drag of the
// files, which need not exist, or of a text. The window's title is "ready" at first and after each drag the result of
// it, in hexadecimal, and the effect.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "system/Windows.h"

#include <shellapi.h>
#include <shlobj.h>

namespace lumenor {
namespace {

constexpr int width = 100;
constexpr int height = 60;

/// What is dragged: its format and bytes.
struct Payload {
  CLIPFORMAT format = CF_UNICODETEXT;
  std::string bytes;
};

Payload payload;

std::string Bytes(const std::wstring &text) {
  return std::string(reinterpret_cast<const char *>(text.data()), text.size() * sizeof(wchar_t));
}

Payload ListOf(const std::vector<std::wstring> &paths) {
  DROPFILES header = {};
  header.pFiles = sizeof header;
  header.fWide = TRUE;
  std::wstring names;
  for (const std::wstring &path : paths)
    names += path + L'\0';
  return {CF_HDROP, std::string(reinterpret_cast<const char *>(&header), sizeof header) + Bytes(names + L'\0')};
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// An object on the program's own stack, which nobody deletes.
template <typename Interface> class StackObject : public Interface {
public:
  virtual ~StackObject() = default;
  // Identifiers of remote calls lie at odd places.
  [[gnu::no_sanitize("alignment")]] HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) override {
    const bool isKnown =
        std::memcmp(&id, &__uuidof(IUnknown), sizeof id) == 0 || std::memcmp(&id, &__uuidof(Interface), sizeof id) == 0;
    *object = isKnown ? static_cast<Interface *>(this) : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

class Data : public StackObject<IDataObject> {
public:
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC *format) override {
    return format->cfFormat == payload.format && (format->tymed & TYMED_HGLOBAL) != 0 ? S_OK : DV_E_FORMATETC;
  }
  HRESULT STDMETHODCALLTYPE GetData(FORMATETC *format, STGMEDIUM *medium) override {
    *medium = {};
    if (const HRESULT result = QueryGetData(format); result != S_OK)
      return result;
    medium->tymed = TYMED_HGLOBAL;
    medium->hGlobal = ::GlobalAlloc(GMEM_MOVEABLE, payload.bytes.size());
    std::memcpy(::GlobalLock(medium->hGlobal), payload.bytes.data(), payload.bytes.size());
    ::GlobalUnlock(medium->hGlobal);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC *, STGMEDIUM *) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC *, FORMATETC *) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC *, STGMEDIUM *, BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC **) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC *, DWORD, IAdviseSink *, DWORD *) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA **) override { return E_NOTIMPL; }
};

class Source : public StackObject<IDropSource> {
public:
  HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keyState) override {
    if (escapePressed)
      return DRAGDROP_S_CANCEL;
    return (keyState & MK_LBUTTON) != 0 ? S_OK : DRAGDROP_S_DROP;
  }
  HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

#pragma GCC diagnostic pop

void RunDrag(HWND window) {
  Data data;
  Source source;
  DWORD effect = 0;
  const HRESULT result = ::DoDragDrop(&data, &source, DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK, &effect);
  wchar_t title[40] = {};
  std::swprintf(title, 40, L"%lx %lx", static_cast<unsigned long>(result), effect);
  ::SetWindowTextW(window, title);
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_LBUTTONDOWN:
    RunDrag(window);
    return 0;
  case WM_DESTROY:
    ::PostQuitMessage(0);
    return 0;
  default:
    return ::DefWindowProcW(window, message, wParam, lParam);
  }
}

bool MakeWindow(int left, int top) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = ::GetModuleHandleW(nullptr);
  windowClass.hbrBackground = static_cast<HBRUSH>(::GetStockObject(GRAY_BRUSH));
  windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = L"LumenorDragSource";
  ::RegisterClassW(&windowClass);
  return ::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, windowClass.lpszClassName, L"ready", WS_POPUP | WS_VISIBLE,
                           left, top, width, height, nullptr, nullptr, windowClass.hInstance, nullptr) != nullptr;
}

} // namespace
} // namespace lumenor

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  using namespace lumenor;
  ::SetProcessDPIAware(); // its place is told in the display's own pixels
  int count = 0;
  wchar_t **const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (words == nullptr || count < 4 || FAILED(::OleInitialize(nullptr)))
    return 1;
  if (std::wstring(words[3]) == L"files")
    payload = ListOf({words + 4, words + count});
  else
    payload = {CF_UNICODETEXT, Bytes(std::wstring(L"a text") + L'\0')};
  if (!MakeWindow(std::wcstol(words[1], nullptr, 10), std::wcstol(words[2], nullptr, 10)))
    return 2;
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    ::DispatchMessageW(&message);
  return 0;
}
