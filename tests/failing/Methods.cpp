#include "failing/Methods.h"

#include <array>
#include <bit>
#include <cstdint>
#include <type_traits>

#include <commctrl.h>
#include <commoncontrols.h>
#include <d2d1.h>
#include <dwrite.h>
#include <msxml2.h>
#include <oleacc.h>
#include <olectl.h>
#include <propsys.h>
#include <shlobj.h>
#include <shobjidl.h>
#include <uianimation.h>
#include <wincodec.h>

namespace lumenor::failing {

namespace {

template <typename Interface> const IID &IdOf() { return __uuidof(Interface); }

// The headers tie no identifier to these, and the libraries lack that of the document.
template <> const IID &IdOf<IAccPropServices>() { return IID_IAccPropServices; }
template <> const IID &IdOf<IXMLDOMAttribute>() { return IID_IXMLDOMAttribute; }
template <> const IID &IdOf<IXMLDOMNamedNodeMap>() { return IID_IXMLDOMNamedNodeMap; }
template <> const IID &IdOf<IXMLDOMNode>() { return IID_IXMLDOMNode; }
template <> const IID &IdOf<IXMLDOMNodeList>() { return IID_IXMLDOMNodeList; }
template <> const IID &IdOf<IXMLDOMDocument2>() {
  static constexpr IID id = {0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
  return id;
}

/// Whether a parameter is where a method puts an object or a handle.
template <typename Parameter> constexpr bool IsOutPointer() {
  using Out = std::remove_pointer_t<Parameter>;
  using Pointee = std::remove_pointer_t<Out>;
  return std::is_pointer_v<Parameter> && std::is_pointer_v<Out> && !std::is_const_v<Out> &&
         (std::is_class_v<Pointee> || std::is_void_v<Pointee>);
}

/// A bit for each such parameter, the lowest one for the first.
template <typename... Parameters> constexpr std::uint32_t OutPointers() {
  std::uint32_t pointers = 0;
  [[maybe_unused]] std::uint32_t bit = 1;
  ((pointers |= IsOutPointer<Parameters>() ? bit : 0, bit <<= 1), ...);
  return pointers;
}

/// By the C++ ABI a pointer to a virtual method holds one more than the method's distance from the table's begin.
template <typename Pointer> std::size_t SlotOf(Pointer method) {
  const auto words = std::bit_cast<std::array<std::uintptr_t, 2>>(method);
  return (words[0] - 1) / sizeof(void *);
}

enum Gives { GivesNothing, GivesBack };

constexpr std::uint64_t outOfMemory = static_cast<std::uint32_t>(E_OUTOFMEMORY);

template <typename Class, typename... Parameters> Method
MakeMethod(REFIID id, std::string_view name, Gives gives, HRESULT (STDMETHODCALLTYPE Class::*method)(Parameters...)) {
  return {{name, outOfMemory, 0, gives == GivesBack, OutPointers<Parameters...>()}, id, SlotOf(method)};
}

template <typename Class, typename... Parameters>
Method MakeMethod(REFIID id, std::string_view name, Gives gives,
                  HRESULT (STDMETHODCALLTYPE Class::*method)(Parameters...) const) {
  return {{name, outOfMemory, 0, gives == GivesBack, OutPointers<Parameters...>()}, id, SlotOf(method)};
}

// A method, one that ends something or gives it back, one of several of its name, and the query for interfaces.
#define LUMENOR_METHOD(Interface, name)                                                                                \
  MakeMethod(IdOf<Interface>(), #Interface "::" #name, GivesNothing, &Interface::name)
#define LUMENOR_ENDING(Interface, name)                                                                                \
  MakeMethod(IdOf<Interface>(), #Interface "::" #name, GivesBack, &Interface::name)
#define LUMENOR_OVERLOAD(Interface, name, parameters)                                                                  \
  MakeMethod(IdOf<Interface>(), #Interface "::" #name, GivesNothing,                                                   \
             static_cast<HRESULT(STDMETHODCALLTYPE Interface::*) parameters>(&Interface::name))
#define LUMENOR_QUERY(Interface)                                                                                       \
  MakeMethod(IdOf<Interface>(), #Interface "::QueryInterface", GivesNothing,                                           \
             static_cast<HRESULT (STDMETHODCALLTYPE IUnknown::*)(REFIID, void **)>(&IUnknown::QueryInterface))

std::vector<Method> MakeMethods() {
  return {
      LUMENOR_ENDING(IAccPropServices, ClearHwndProps),
      LUMENOR_METHOD(IAccPropServices, SetHwndProp),
      LUMENOR_METHOD(IAccPropServices, SetHwndPropStr),
      LUMENOR_METHOD(IClassFactory, CreateInstance),
      LUMENOR_METHOD(IClassFactory, LockServer),
      LUMENOR_METHOD(ICustomDestinationList, AddUserTasks),
      LUMENOR_METHOD(ICustomDestinationList, BeginList),
      LUMENOR_METHOD(ICustomDestinationList, CommitList),
      LUMENOR_METHOD(ICustomDestinationList, SetAppID),
      LUMENOR_METHOD(ID2D1DCRenderTarget, BindDC),
      LUMENOR_OVERLOAD(ID2D1Factory, CreateDCRenderTarget,
                       (const D2D1_RENDER_TARGET_PROPERTIES *, ID2D1DCRenderTarget **)),
      LUMENOR_METHOD(ID2D1Factory, CreatePathGeometry),
      LUMENOR_OVERLOAD(ID2D1Geometry, GetBounds, (const D2D1_MATRIX_3X2_F *, D2D1_RECT_F *) const),
      LUMENOR_METHOD(ID2D1GeometrySink, Close),
      LUMENOR_METHOD(ID2D1PathGeometry, Open),
      LUMENOR_OVERLOAD(ID2D1RenderTarget, CreateBitmapFromWicBitmap,
                       (IWICBitmapSource *, const D2D1_BITMAP_PROPERTIES *, ID2D1Bitmap **)),
      LUMENOR_OVERLOAD(
          ID2D1RenderTarget, CreateGradientStopCollection,
          (const D2D1_GRADIENT_STOP *, UINT, D2D1_GAMMA, D2D1_EXTEND_MODE, ID2D1GradientStopCollection **)),
      LUMENOR_OVERLOAD(ID2D1RenderTarget, CreateLinearGradientBrush,
                       (const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES *, const D2D1_BRUSH_PROPERTIES *,
                        ID2D1GradientStopCollection *, ID2D1LinearGradientBrush **)),
      LUMENOR_OVERLOAD(ID2D1RenderTarget, CreateSolidColorBrush,
                       (const D2D1_COLOR_F *, const D2D1_BRUSH_PROPERTIES *, ID2D1SolidColorBrush **)),
      LUMENOR_ENDING(ID2D1RenderTarget, EndDraw),
      LUMENOR_METHOD(IDWriteFactory, CreateEllipsisTrimmingSign),
      LUMENOR_METHOD(IDWriteFactory, CreateTextFormat),
      LUMENOR_METHOD(IDWriteFactory, CreateTextLayout),
      LUMENOR_QUERY(IDWriteFactory),
      LUMENOR_METHOD(IDWriteTextFormat, SetParagraphAlignment),
      LUMENOR_METHOD(IDWriteTextFormat, SetReadingDirection),
      LUMENOR_METHOD(IDWriteTextFormat, SetTextAlignment),
      LUMENOR_METHOD(IDWriteTextFormat, SetTrimming),
      LUMENOR_METHOD(IDWriteTextFormat, SetWordWrapping),
      LUMENOR_METHOD(IDWriteTextLayout, Draw),
      LUMENOR_METHOD(IDWriteTextLayout, GetMetrics),
      LUMENOR_METHOD(IDWriteTextLayout, SetMaxHeight),
      LUMENOR_METHOD(IDWriteTextLayout, SetMaxWidth),
      LUMENOR_METHOD(IDataObject, GetData),
      LUMENOR_METHOD(IDataObject, QueryGetData),
      LUMENOR_METHOD(IDragSourceHelper, InitializeFromBitmap),
      LUMENOR_METHOD(IDropTargetHelper, DragEnter),
      LUMENOR_ENDING(IDropTargetHelper, DragLeave),
      LUMENOR_METHOD(IDropTargetHelper, DragOver),
      LUMENOR_ENDING(IDropTargetHelper, Drop),
      LUMENOR_METHOD(IImageList, GetIcon),
      LUMENOR_METHOD(IObjectCollection, AddObject),
      LUMENOR_METHOD(IObjectCollection, GetCount),
      LUMENOR_QUERY(IObjectCollection),
      LUMENOR_METHOD(IPersistFile, Load),
      LUMENOR_METHOD(IPicture, SaveAsFile),
      LUMENOR_METHOD(IPropertyStore, Commit),
      LUMENOR_METHOD(IPropertyStore, SetValue),
      LUMENOR_QUERY(IShellItem),
      LUMENOR_METHOD(IShellItemImageFactory, GetImage),
      LUMENOR_METHOD(IShellLinkW, GetArguments),
      LUMENOR_METHOD(IShellLinkW, GetDescription),
      LUMENOR_METHOD(IShellLinkW, GetPath),
      LUMENOR_METHOD(IShellLinkW, GetWorkingDirectory),
      LUMENOR_QUERY(IShellLinkW),
      LUMENOR_METHOD(IShellLinkW, Resolve),
      LUMENOR_METHOD(IShellLinkW, SetArguments),
      LUMENOR_METHOD(IShellLinkW, SetDescription),
      LUMENOR_METHOD(IShellLinkW, SetIconLocation),
      LUMENOR_METHOD(IShellLinkW, SetPath),
      LUMENOR_METHOD(IShellLinkW, SetWorkingDirectory),
      LUMENOR_METHOD(IStream, Read),
      LUMENOR_METHOD(IStream, Seek),
      LUMENOR_METHOD(IStream, Stat),
      LUMENOR_METHOD(IUIAnimationManager, CreateAnimationVariable),
      LUMENOR_METHOD(IUIAnimationManager, CreateStoryboard),
      LUMENOR_QUERY(IUIAnimationManager),
      LUMENOR_ENDING(IUIAnimationManager, Shutdown),
      LUMENOR_METHOD(IUIAnimationStoryboard, AddTransition),
      LUMENOR_METHOD(IUIAnimationStoryboard, Schedule),
      LUMENOR_METHOD(IUIAnimationTimer, GetTime),
      LUMENOR_METHOD(IUIAnimationTimer, SetTimerEventHandler),
      LUMENOR_METHOD(IUIAnimationTimer, SetTimerUpdateHandler),
      LUMENOR_METHOD(IUIAnimationTransitionLibrary, CreateAccelerateDecelerateTransition),
      LUMENOR_METHOD(IUIAnimationTransitionLibrary, CreateConstantTransition),
      LUMENOR_METHOD(IUIAnimationVariable, GetIntegerValue),
      LUMENOR_METHOD(IWICBitmapDecoder, GetFrame),
      LUMENOR_METHOD(IWICBitmapDecoder, Initialize),
      LUMENOR_METHOD(IWICBitmapEncoder, Commit),
      LUMENOR_METHOD(IWICBitmapEncoder, CreateNewFrame),
      LUMENOR_METHOD(IWICBitmapEncoder, Initialize),
      LUMENOR_METHOD(IWICBitmapFrameEncode, Commit),
      LUMENOR_METHOD(IWICBitmapFrameEncode, Initialize),
      LUMENOR_METHOD(IWICBitmapFrameEncode, SetPixelFormat),
      LUMENOR_METHOD(IWICBitmapFrameEncode, SetSize),
      LUMENOR_METHOD(IWICBitmapFrameEncode, WriteSource),
      LUMENOR_METHOD(IWICBitmapScaler, Initialize),
      LUMENOR_METHOD(IWICBitmapSource, CopyPixels),
      LUMENOR_METHOD(IWICBitmapSource, GetPixelFormat),
      LUMENOR_METHOD(IWICBitmapSource, GetSize),
      LUMENOR_METHOD(IWICFormatConverter, Initialize),
      LUMENOR_METHOD(IWICImagingFactory, CreateBitmapFromHBITMAP),
      LUMENOR_METHOD(IWICImagingFactory, CreateBitmapFromHICON),
      LUMENOR_METHOD(IWICImagingFactory, CreateBitmapScaler),
      LUMENOR_METHOD(IWICImagingFactory, CreateDecoderFromFilename),
      LUMENOR_METHOD(IWICImagingFactory, CreateDecoderFromStream),
      LUMENOR_METHOD(IWICImagingFactory, CreateFormatConverter),
      LUMENOR_METHOD(IWICImagingFactory, CreateStream),
      LUMENOR_METHOD(IWICStream, InitializeFromFilename),
      LUMENOR_METHOD(IWICStream, InitializeFromIStream),
      LUMENOR_METHOD(IWICStream, InitializeFromMemory),
      LUMENOR_METHOD(IXMLDOMAttribute, put_value),
      LUMENOR_METHOD(IXMLDOMDocument2, createAttribute),
      LUMENOR_METHOD(IXMLDOMDocument2, createNode),
      LUMENOR_METHOD(IXMLDOMDocument2, createProcessingInstruction),
      LUMENOR_METHOD(IXMLDOMDocument2, get_doctype),
      LUMENOR_METHOD(IXMLDOMDocument2, load),
      LUMENOR_METHOD(IXMLDOMDocument2, loadXML),
      LUMENOR_METHOD(IXMLDOMDocument2, put_async),
      LUMENOR_METHOD(IXMLDOMDocument2, put_resolveExternals),
      LUMENOR_METHOD(IXMLDOMDocument2, put_validateOnParse),
      LUMENOR_METHOD(IXMLDOMDocument2, save),
      LUMENOR_METHOD(IXMLDOMDocument2, setProperty),
      LUMENOR_METHOD(IXMLDOMNamedNodeMap, getNamedItem),
      LUMENOR_METHOD(IXMLDOMNamedNodeMap, setNamedItem),
      LUMENOR_METHOD(IXMLDOMNode, appendChild),
      LUMENOR_METHOD(IXMLDOMNode, get_attributes),
      LUMENOR_METHOD(IXMLDOMNode, get_firstChild),
      LUMENOR_METHOD(IXMLDOMNode, get_nodeName),
      LUMENOR_METHOD(IXMLDOMNode, get_nodeValue),
      LUMENOR_METHOD(IXMLDOMNode, get_text),
      LUMENOR_METHOD(IXMLDOMNode, insertBefore),
      LUMENOR_METHOD(IXMLDOMNode, put_text),
      LUMENOR_METHOD(IXMLDOMNode, removeChild),
      LUMENOR_METHOD(IXMLDOMNode, selectNodes),
      LUMENOR_METHOD(IXMLDOMNode, selectSingleNode),
      LUMENOR_METHOD(IXMLDOMNodeList, nextNode),
  };
}

constexpr std::string_view answersNothing = "it answers nothing";

constexpr OtherMethod others[] = {
    {"ID2D1Bitmap::GetSize", "it has no answer that means a failure"},
    {"ID2D1Brush::SetTransform", answersNothing},
    {"ID2D1GeometrySink::AddLines", answersNothing},
    {"ID2D1GeometrySink::BeginFigure", answersNothing},
    {"ID2D1GeometrySink::EndFigure", answersNothing},
    {"ID2D1RenderTarget::BeginDraw", answersNothing},
    {"ID2D1RenderTarget::Clear", answersNothing},
    {"ID2D1RenderTarget::DrawBitmap", answersNothing},
    {"ID2D1RenderTarget::DrawGlyphRun", answersNothing},
    {"ID2D1RenderTarget::DrawRoundedRectangle", answersNothing},
    {"ID2D1RenderTarget::DrawTextLayout", answersNothing},
    {"ID2D1RenderTarget::FillGeometry", answersNothing},
    {"ID2D1RenderTarget::FillRectangle", answersNothing},
    {"ID2D1RenderTarget::FillRoundedRectangle", answersNothing},
    {"ID2D1RenderTarget::GetFactory", answersNothing},
    {"ID2D1RenderTarget::PopAxisAlignedClip", answersNothing},
    {"ID2D1RenderTarget::PushAxisAlignedClip", answersNothing},
    {"ID2D1RenderTarget::SetDpi", answersNothing},
    {"ID2D1RenderTarget::SetTransform", answersNothing},
    {"IHelpPane::DisplaySearchResults", "no scenario searches the help"},
    {"IUnknown::AddRef", "it has no answer that means a failure"},
    {"IUnknown::Release", "it has no answer that means a failure"},
};

} // namespace

const std::vector<Method> &Methods() {
  static const std::vector<Method> methods = MakeMethods();
  return methods;
}

std::span<const OtherMethod> OtherMethods() { return others; }

} // namespace lumenor::failing
