#pragma once
// A thin wrapper over the platform's XML DOM. Needs a thread that has initialised COM; DOM objects stay on it.
//
// A failed call raises HResultError; a null node raises it with E_INVALIDARG, a failed string allocation and a parser
// without memory with E_OUTOFMEMORY. XPaths are the DOM's, relative to the node that they are given with.

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <msxml2.h>
#include <wrl/client.h>

#include "system/Windows.h"

namespace lumenor {

using XmlDocumentPtr = Microsoft::WRL::ComPtr<IXMLDOMDocument2>;
using XmlNodePtr = Microsoft::WRL::ComPtr<IXMLDOMNode>;

/// The class of the parser, and of the documents that it makes: DOMDocument60.
constexpr CLSID xmlParserClass = {0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};

/// Names and values of attributes, in order.
using XmlAttributes = std::vector<std::pair<std::wstring, std::wstring>>;

/// While one lives, its thread looks the parser up once, at the first document, and not for each: the platform goes
/// through the registry for that, which takes longer than to read a small document. Ends before COM does on the thread.
class XmlParserHold {
public:
  XmlParserHold();
  ~XmlParserHold();
  XmlParserHold(const XmlParserHold &) = delete;
  XmlParserHold &operator=(const XmlParserHold &) = delete;

  /// A new document without anything in it, as CoCreateInstance would make it. The caller owns it.
  HRESULT MakeDocument(REFIID id, void **document);

private:
  XmlParserHold *const outer;
  Microsoft::WRL::ComPtr<IClassFactory> parsers; // null until the first document
  bool isLocked = false;                         // in memory, with the class of the parsers
};

/// The document in the file at the expanded `path`; null, with no line logged, when it can't be read, isn't well-formed
/// or has a DOCTYPE. Null too, and logged, when it has more than 16 MB.
XmlDocumentPtr LoadXmlFile(const std::wstring &path);

/// The same of a file that other programs may have in use for a moment, which is waited for.
XmlDocumentPtr LoadXmlFileWhenFree(const std::wstring &path);

/// The document that `xml` holds; null when it isn't well-formed or has a DOCTYPE.
XmlDocumentPtr LoadXmlString(const std::wstring &xml);

/// Writes the document over the file at the expanded `path`, whole or not at all (system/WholeFile.h). One that is too
/// large to be read again isn't written, with a line in the log.
void SaveXmlFile(const XmlDocumentPtr &document, const std::wstring &path);

/// The first node that matches; null when none does or `node` is null.
XmlNodePtr SelectNode(const XmlNodePtr &node, const std::wstring &xpath);

/// The nodes that match, in document order: all of them, or the first `limit` ones.
std::vector<XmlNodePtr> SelectNodes(const XmlNodePtr &node, const std::wstring &xpath, std::size_t limit = SIZE_MAX);

/// The text of the node and all below it.
std::wstring NodeText(const XmlNodePtr &node);

/// The text of the first node that matches; empty when none does.
std::wstring ChildText(const XmlNodePtr &node, const std::wstring &xpath);

/// The attribute's value; empty when the node has no such attribute.
std::wstring NodeAttribute(const XmlNodePtr &node, const std::wstring &name);

/// The attribute's value on the first node that matches; empty when the node or the attribute is missing.
std::wstring ChildAttribute(const XmlNodePtr &node, const std::wstring &xpath, const std::wstring &name);

/// `text` with U+FFFD for each character that XML can't hold: file names may have such, and a document that has one is
/// lost, as it can't be read again.
std::wstring XmlText(const std::wstring &text);

/// A new element of `document`, not yet in its tree. Empty text gives no text node; text and
/// values go through XmlText.
XmlNodePtr CreateNode(const XmlDocumentPtr &document, const std::wstring &name, const std::wstring &text,
                      const XmlAttributes &attributes = {});

/// The same with an attribute MaxLength, unless `maxLength` is 0.
XmlNodePtr CreateNodeWithMaxLength(const XmlDocumentPtr &document, const std::wstring &name, const std::wstring &text,
                                   LONG maxLength);

/// A new processing instruction of `document`, not yet in its tree.
XmlNodePtr CreateProcessingInstruction(const XmlDocumentPtr &document, const std::wstring &target,
                                       const std::wstring &data);

/// The node's name: an element's tag, a processing instruction's target.
std::wstring NodeName(const XmlNodePtr &node);

/// The first child of `parent`; null when it has none.
XmlNodePtr FirstChild(const XmlNodePtr &parent);

/// Puts `child` ahead of `reference`, a child of `parent`; behind the last one when `reference` is null.
void InsertBefore(const XmlNodePtr &parent, const XmlNodePtr &child, const XmlNodePtr &reference);

/// Takes `child` out of `parent`; it stays whole and may be put in again elsewhere.
void RemoveChild(const XmlNodePtr &parent, const XmlNodePtr &child);

/// Puts `child` behind the last child of `parent`.
void AppendChild(const XmlNodePtr &parent, const XmlNodePtr &child);

} // namespace lumenor
