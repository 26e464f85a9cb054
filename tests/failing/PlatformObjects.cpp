#include "failing/PlatformObjects.h"

#include "failing/Calls.h"
#include "support/ComApartment.h"
#include "system/ComText.h"
#include "system/HResultError.h"
#include "system/MemoryStream.h"
#include "system/Xml.h"
#include "toolkit/StatusFont.h"

#include <commctrl.h>
#include <commoncontrols.h>
#include <d2d1.h>
#include <oleacc.h>
#include <olectl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shobjidl.h>
#include <uianimation.h>
#include <wincodec.h>

using Microsoft::WRL::ComPtr;

namespace lumenor::failing {

namespace {

template <typename Interface> ComPtr<Interface> Make(REFCLSID id) {
  ComPtr<Interface> object;
  ThrowIfFailed(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)));
  StandBetween(object.Get());
  return object;
}

void StandBetweenXml() {
  ComPtr<IClassFactory> parsers;
  ThrowIfFailed(::CoGetClassObject(xmlParserClass, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&parsers)));
  StandBetween(parsers.Get());
  const XmlDocumentPtr document = LoadXmlString(L"<?target data?><list name='value'>text<!-- remark --></list>");
  StandBetween(document.Get());
  for (const XmlNodePtr &node : SelectNodes(document, L"//node() | //@*"))
    StandBetween(node.Get());
  ComPtr<IXMLDOMNodeList> list;
  ThrowIfFailed(document->selectNodes(MakeBstr(L"list").Get(), &list));
  StandBetween(list.Get());
  ComPtr<IXMLDOMNamedNodeMap> attributes;
  ThrowIfFailed(SelectNode(document, L"list")->get_attributes(&attributes));
  StandBetween(attributes.Get());
}

/// Writes a picture of one pixel as a PNG.
void StandBetweenEncoder(IWICStream *stream, IWICBitmapSource *source) {
  const auto encoder = Make<IWICBitmapEncoder>(CLSID_WICPngEncoder);
  ThrowIfFailed(encoder->Initialize(stream, WICBitmapEncoderNoCache));
  ComPtr<IWICBitmapFrameEncode> frame;
  ThrowIfFailed(encoder->CreateNewFrame(&frame, nullptr));
  StandBetween(frame.Get());
  ThrowIfFailed(frame->Initialize(nullptr));
  ThrowIfFailed(frame->WriteSource(source, nullptr));
  ThrowIfFailed(frame->Commit());
  ThrowIfFailed(encoder->Commit());
}

/// What the imaging service keeps of the registry once it has looked there for a decoder. The dock seldom lets it, so
/// that it would be taken for what a run leaves behind.
void SearchDecoder(IWICImagingFactory *factory, IWICStream *stream) {
  ComPtr<IWICBitmapDecoder> found;
  ThrowIfFailed(factory->CreateDecoderFromStream(stream, nullptr, WICDecodeMetadataCacheOnLoad, &found));
}

/// Reads it again.
void StandBetweenDecoder(IWICStream *stream) {
  ComPtr<IClassFactory> decoders;
  ThrowIfFailed(::CoGetClassObject(CLSID_WICPngDecoder, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&decoders)));
  StandBetween(decoders.Get());
  ComPtr<IWICBitmapDecoder> decoder;
  ThrowIfFailed(decoders->CreateInstance(nullptr, IID_PPV_ARGS(&decoder)));
  StandBetween(decoder.Get());
  ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  ThrowIfFailed(decoder->Initialize(stream, WICDecodeMetadataCacheOnLoad));
  ComPtr<IWICBitmapFrameDecode> frame;
  ThrowIfFailed(decoder->GetFrame(0, &frame));
  StandBetween(frame.Get());
}

void StandBetweenPictures() {
  const auto factory = Make<IWICImagingFactory>(CLSID_WICImagingFactory);
  const ComPtr<IStream> memory = MakeMemoryStream();
  StandBetween(memory.Get());
  ComPtr<IWICStream> stream;
  ThrowIfFailed(factory->CreateStream(&stream));
  StandBetween(stream.Get());
  ComPtr<IWICBitmap> picture;
  ThrowIfFailed(factory->CreateBitmap(1, 1, GUID_WICPixelFormat32bppBGRA, WICBitmapCacheOnLoad, &picture));
  StandBetween(picture.Get());
  ComPtr<IWICBitmapScaler> scaler;
  ThrowIfFailed(factory->CreateBitmapScaler(&scaler));
  StandBetween(scaler.Get());
  ComPtr<IWICFormatConverter> converter;
  ThrowIfFailed(factory->CreateFormatConverter(&converter));
  StandBetween(converter.Get());
  ThrowIfFailed(stream->InitializeFromIStream(memory.Get()));
  StandBetweenEncoder(stream.Get(), picture.Get());
  SearchDecoder(factory.Get(), stream.Get());
  StandBetweenDecoder(stream.Get());
}

void StandBetweenDrawing(ID2D1RenderTarget *target) {
  StandBetween(target);
  ComPtr<ID2D1Factory> factory;
  target->GetFactory(&factory);
  StandBetween(factory.Get());
  ComPtr<ID2D1PathGeometry> geometry;
  ThrowIfFailed(factory->CreatePathGeometry(&geometry));
  StandBetween(geometry.Get());
  ComPtr<ID2D1GeometrySink> sink;
  ThrowIfFailed(geometry->Open(&sink));
  StandBetween(sink.Get());
  ThrowIfFailed(sink->Close());
}

void StandBetweenText() {
  const ComPtr<IDWriteFactory> factory = CreateTextFactory();
  StandBetween(factory.Get());
  const ComPtr<IDWriteTextFormat> format = CreateStatusTextFormat(
      factory.Get(), DWRITE_FONT_WEIGHT_NORMAL, DWRITE_FONT_STYLE_NORMAL, DWRITE_FONT_STRETCH_NORMAL, 10.0F);
  StandBetween(format.Get());
  ComPtr<IDWriteTextLayout> layout;
  ThrowIfFailed(factory->CreateTextLayout(L"x", 1, format.Get(), 100.0F, 100.0F, &layout));
  StandBetween(layout.Get());
}

void StandBetweenIcons() {
  ComPtr<IShellItem> item;
  ThrowIfFailed(::SHCreateItemFromParsingName(L"C:\\", nullptr, IID_PPV_ARGS(&item)));
  StandBetween(item.Get());
  ComPtr<IImageList> icons;
  ThrowIfFailed(::SHGetImageList(SHIL_EXTRALARGE, IID_PPV_ARGS(&icons)));
  StandBetween(icons.Get());
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = ::LoadIconW(nullptr, IDI_APPLICATION);
  ComPtr<IPicture> picture;
  ThrowIfFailed(::OleCreatePictureIndirect(&description, IID_IPicture, FALSE, &picture));
  StandBetween(picture.Get());
}

void StandBetweenAnimation() {
  const auto manager = Make<IUIAnimationManager>(CLSID_UIAnimationManager);
  Make<IUIAnimationTransitionLibrary>(CLSID_UIAnimationTransitionLibrary);
  Make<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  ComPtr<IUIAnimationStoryboard> storyboard;
  ThrowIfFailed(manager->CreateStoryboard(&storyboard));
  StandBetween(storyboard.Get());
  ComPtr<IUIAnimationVariable> variable;
  ThrowIfFailed(manager->CreateAnimationVariable(0.0, &variable));
  StandBetween(variable.Get());
}

} // namespace

void StandBetweenObjects(ID2D1RenderTarget *target) {
  const tests::ComApartment com;
  StandBetweenXml();
  StandBetweenPictures();
  StandBetweenDrawing(target);
  StandBetweenText();
  StandBetweenIcons();
  StandBetweenAnimation();
  Make<IShellLinkW>(CLSID_ShellLink);
  Make<ICustomDestinationList>(CLSID_DestinationList);
  Make<IObjectCollection>(CLSID_EnumerableObjectCollection);
  Make<IUnknown>(CLSID_DragDropHelper);
  Make<IUnknown>(CLSID_AccPropServices);
}

} // namespace lumenor::failing
