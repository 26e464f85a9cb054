#include "system/Xml.h"

#include "system/ComText.h"
#include "system/FileReading.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/MemoryStream.h"
#include "system/Text.h"
#include "system/WholeFile.h"

namespace lumenor {

using Microsoft::WRL::ComPtr;

namespace {

constexpr IID domDocumentInterface = {0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

thread_local XmlParserHold *innermostHold = nullptr;

/// In bytes. The parser takes seconds for some megabytes, and the bar stands still meanwhile.
constexpr LONGLONG largestFile = 16 << 20;

/// `node`, which must not be null.
template <typename Node>
const ComPtr<Node> &Required(const ComPtr<Node> &node, SourcePlace place = SourcePlace::current()) {
  if (node == nullptr)
    throw HResultError(E_INVALIDARG, place);
  return node;
}

HRESULT MakeDocument(REFIID id, void **document) {
  if (innermostHold != nullptr)
    return innermostHold->MakeDocument(id, document);
  return ::CoCreateInstance(xmlParserClass, nullptr, CLSCTX_INPROC_SERVER, id, document);
}

XmlDocumentPtr NewDocument() {
  XmlDocumentPtr document;
  ThrowIfFailed(MakeDocument(domDocumentInterface, reinterpret_cast<void **>(document.GetAddressOf())));
  ThrowIfFailed(document->put_async(VARIANT_FALSE));
  ThrowIfFailed(document->put_validateOnParse(VARIANT_TRUE));
  ThrowIfFailed(document->put_resolveExternals(VARIANT_TRUE));
  VARIANT prohibited = {};
  prohibited.vt = VT_BOOL;
  prohibited.boolVal = VARIANT_TRUE;
  document->setProperty(MakeBstr(L"ProhibitDTD").Get(), prohibited); // HasDoctype covers a parser that ignores it
  return document;
}

/// Not every platform's parser refuses a DOCTYPE when it should. None of the documents needs one: its entities would be
/// expanded and its declarations enforced.
bool HasDoctype(const XmlDocumentPtr &document) {
  ComPtr<IXMLDOMDocumentType> type;
  ThrowIfFailed(document->get_doctype(type.GetAddressOf()));
  return type != nullptr;
}

/// The document after the parser's result; null when it must not be used. A lack of memory says nothing about it.
XmlDocumentPtr Parsed(const XmlDocumentPtr &document, HRESULT result, VARIANT_BOOL isParsed) {
  if (result == E_OUTOFMEMORY)
    throw HResultError(result);
  return SUCCEEDED(result) && isParsed && !HasDoctype(document) ? document : nullptr;
}

/// The document in the open file. The parser gets the bytes: with a path it would go through the machinery for web
/// addresses, which takes fifty times as long.
XmlDocumentPtr ParseFile(const FileHandle &file, const std::wstring &path) {
  const XmlDocumentPtr document = NewDocument(); // ahead of all else: a lack of the parser is no lack of the file
  LARGE_INTEGER size{};
  if (!file || !::GetFileSizeEx(file.Get(), &size))
    return nullptr;
  if (size.QuadPart > largestFile) {
    LogError("Xml: %S is too large", path.c_str());
    return nullptr;
  }
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    return nullptr;
  bytes.resize(read);
  const ComPtr<IStream> stream = MakeMemoryStream(bytes);
  VARIANT source = {};
  source.vt = VT_UNKNOWN;
  source.punkVal = stream.Get(); // lent
  VARIANT_BOOL isParsed = VARIANT_FALSE;
  const HRESULT result = document->load(source, &isParsed);
  return Parsed(document, result, isParsed);
}

/// Whether XML allows the character. Half of a surrogate pair is none.
bool IsXmlCharacter(wchar_t c) {
  if (c < 0x20)
    return c == L'\t' || c == L'\n' || c == L'\r';
  return !IS_HIGH_SURROGATE(c) && !IS_LOW_SURROGATE(c) && c < 0xFFFE;
}

void SetAttribute(const XmlDocumentPtr &document, const XmlNodePtr &node, const std::wstring &name,
                  const std::wstring &value) {
  ComPtr<IXMLDOMAttribute> attribute;
  ThrowIfFailed(document->createAttribute(MakeBstr(name).Get(), attribute.GetAddressOf()));
  ThrowIfFailed(attribute->put_value(Variant(XmlText(value)).Get()));
  ComPtr<IXMLDOMNamedNodeMap> attributes;
  ThrowIfFailed(node->get_attributes(attributes.GetAddressOf()));
  ComPtr<IXMLDOMNode> added;
  ThrowIfFailed(attributes->setNamedItem(attribute.Get(), added.GetAddressOf()));
}

} // namespace

XmlParserHold::XmlParserHold() : outer(std::exchange(innermostHold, this)) {}

XmlParserHold::~XmlParserHold() {
  innermostHold = outer;
  if (isLocked)
    parsers->LockServer(FALSE);
}

HRESULT XmlParserHold::MakeDocument(REFIID id, void **document) {
  if (parsers == nullptr) {
    const HRESULT found = ::CoGetClassObject(xmlParserClass, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&parsers));
    if (FAILED(found))
      return found;
    isLocked = SUCCEEDED(parsers->LockServer(TRUE)); // or the platform may unload it between two documents
  }
  return parsers->CreateInstance(nullptr, id, document);
}

XmlDocumentPtr LoadXmlFile(const std::wstring &path) { return ParseFile(OpenForReading(path), path); }

XmlDocumentPtr LoadXmlFileWhenFree(const std::wstring &path) { return ParseFile(OpenForReadingWhenFree(path), path); }

XmlDocumentPtr LoadXmlString(const std::wstring &xml) {
  const XmlDocumentPtr document = NewDocument();
  VARIANT_BOOL isParsed = VARIANT_FALSE;
  const HRESULT result = document->loadXML(MakeBstr(xml).Get(), &isParsed);
  return Parsed(document, result, isParsed);
}

void SaveXmlFile(const XmlDocumentPtr &document, const std::wstring &path) {
  const ComPtr<IStream> stream = MakeMemoryStream();
  VARIANT target = {};
  target.vt = VT_UNKNOWN;
  target.punkVal = stream.Get(); // lent
  ThrowIfFailed(Required(document)->save(target));
  const std::string bytes = BytesOf(stream.Get());
  if (bytes.size() > std::size_t{largestFile}) // which would take the place of one that can be read
    return LogError("Xml: %S would be too large and stays as it is", path.c_str());
  WriteWholeFile(path, bytes);
}

XmlNodePtr SelectNode(const XmlNodePtr &node, const std::wstring &xpath) {
  if (node == nullptr)
    return nullptr;
  XmlNodePtr selected;
  ThrowIfFailed(node->selectSingleNode(MakeBstr(xpath).Get(), selected.GetAddressOf()));
  return selected;
}

std::vector<XmlNodePtr> SelectNodes(const XmlNodePtr &node, const std::wstring &xpath, std::size_t limit) {
  ComPtr<IXMLDOMNodeList> list;
  ThrowIfFailed(Required(node)->selectNodes(MakeBstr(xpath).Get(), list.GetAddressOf()));
  std::vector<XmlNodePtr> nodes;
  while (nodes.size() < limit) {
    XmlNodePtr next;
    if (ThrowIfFailed(list->nextNode(next.GetAddressOf())) != S_OK || next == nullptr)
      break;
    nodes.push_back(std::move(next));
  }
  return nodes;
}

std::wstring NodeText(const XmlNodePtr &node) {
  Bstr text;
  ThrowIfFailed(Required(node)->get_text(text.Put()));
  return TextOf(text);
}

std::wstring ChildText(const XmlNodePtr &node, const std::wstring &xpath) {
  const XmlNodePtr child = SelectNode(Required(node), xpath);
  return child == nullptr ? std::wstring() : NodeText(child);
}

std::wstring NodeAttribute(const XmlNodePtr &node, const std::wstring &name) {
  ComPtr<IXMLDOMNamedNodeMap> attributes;
  ThrowIfFailed(Required(node)->get_attributes(attributes.GetAddressOf()));
  if (attributes == nullptr)
    return {}; // a text or a document, which can have none
  XmlNodePtr attribute;
  ThrowIfFailed(attributes->getNamedItem(MakeBstr(name).Get(), attribute.GetAddressOf()));
  if (attribute == nullptr)
    return {};
  Variant value;
  ThrowIfFailed(attribute->get_nodeValue(value.Put()));
  return value.Text();
}

std::wstring ChildAttribute(const XmlNodePtr &node, const std::wstring &xpath, const std::wstring &name) {
  const XmlNodePtr child = SelectNode(Required(node), xpath);
  return child == nullptr ? std::wstring() : NodeAttribute(child, name);
}

std::wstring XmlText(const std::wstring &text) {
  std::wstring held = text;
  for (std::size_t at = 0; at < held.size(); ++at)
    if (at + 1 < held.size() && IS_SURROGATE_PAIR(held[at], held[at + 1]))
      ++at;
    else if (!IsXmlCharacter(held[at]))
      held[at] = L'\uFFFD';
  return held;
}

XmlNodePtr CreateNode(const XmlDocumentPtr &document, const std::wstring &name, const std::wstring &text,
                      const XmlAttributes &attributes) {
  VARIANT type = {};
  type.vt = VT_I4;
  type.lVal = NODE_ELEMENT;
  XmlNodePtr node;
  ThrowIfFailed(Required(document)->createNode(type, MakeBstr(name).Get(), MakeBstr({}).Get(), node.GetAddressOf()));
  if (!text.empty())
    ThrowIfFailed(node->put_text(MakeBstr(XmlText(text)).Get()));
  for (const auto &[attributeName, value] : attributes)
    SetAttribute(document, node, attributeName, value);
  return node;
}

XmlNodePtr CreateNodeWithMaxLength(const XmlDocumentPtr &document, const std::wstring &name, const std::wstring &text,
                                   LONG maxLength) {
  if (maxLength == 0)
    return CreateNode(document, name, text);
  return CreateNode(document, name, text, {{L"MaxLength", IntToText(maxLength)}});
}

XmlNodePtr CreateProcessingInstruction(const XmlDocumentPtr &document, const std::wstring &target,
                                       const std::wstring &data) {
  ComPtr<IXMLDOMProcessingInstruction> instruction;
  ThrowIfFailed(Required(document)->createProcessingInstruction(MakeBstr(target).Get(), MakeBstr(data).Get(),
                                                                instruction.GetAddressOf()));
  return instruction;
}

std::wstring NodeName(const XmlNodePtr &node) {
  Bstr name;
  ThrowIfFailed(Required(node)->get_nodeName(name.Put()));
  return TextOf(name);
}

XmlNodePtr FirstChild(const XmlNodePtr &parent) {
  XmlNodePtr child;
  ThrowIfFailed(Required(parent)->get_firstChild(child.GetAddressOf()));
  return child;
}

void InsertBefore(const XmlNodePtr &parent, const XmlNodePtr &child, const XmlNodePtr &reference) {
  if (reference == nullptr)
    return AppendChild(parent, child);
  VARIANT place = {};
  place.vt = VT_DISPATCH;
  place.pdispVal = reference.Get(); // lent
  XmlNodePtr inserted;
  ThrowIfFailed(Required(parent)->insertBefore(Required(child).Get(), place, inserted.GetAddressOf()));
}

void RemoveChild(const XmlNodePtr &parent, const XmlNodePtr &child) {
  XmlNodePtr removed;
  ThrowIfFailed(Required(parent)->removeChild(Required(child).Get(), removed.GetAddressOf()));
}

void AppendChild(const XmlNodePtr &parent, const XmlNodePtr &child) {
  XmlNodePtr added;
  ThrowIfFailed(Required(parent)->appendChild(Required(child).Get(), added.GetAddressOf()));
}

} // namespace lumenor
