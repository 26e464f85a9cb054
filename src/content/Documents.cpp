#include "content/Documents.h"

#include <cstdlib>

#include "content/DocumentNames.h"
#include "content/Stubs.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Text.h"

namespace lumenor {

namespace {

LONG Number(const std::wstring &text) { return ::_wtoi(text.c_str()); }

/// Failures are left to the save, which then can't write the file.
void MakeUserFolder() {
  const std::wstring folder = ExpandPath(product::userFolder);
  if (PathExists(folder))
    return;
  if (const std::wstring parent = ExpandPath(product::makerFolder); !PathExists(parent))
    ::CreateDirectoryW(parent.c_str(), nullptr);
  ::CreateDirectoryW(folder.c_str(), nullptr);
}

/// What the file of the document holds at present.
DocumentReading ReadFile(const std::wstring &name) {
  const std::wstring path = DocumentPath(name);
  const XmlDocumentPtr document = LoadXmlFileWhenFree(path);
  if (document == nullptr)
    return {PathIsMissing(path) ? DocumentState::Missing : DocumentState::Unreadable, {}};
  if (SelectNode(document, L"/UIRoot/" + name + L"/Elements") == nullptr)
    return {DocumentState::Unreadable, {}};
  DocumentReading reading{DocumentState::Read, {}};
  for (const XmlNodePtr &node : SelectNodes(document, ElementsQuery(name)))
    reading.elements.push_back(NodeToElement(node));
  return reading;
}

} // namespace

std::wstring DocumentPath(const std::wstring &name) { return ExpandPath(product::userFolder) + L"\\" + name + L".xml"; }

bool DocumentExists(const std::wstring &name) { return PathExists(DocumentPath(name)); }

std::wstring EmptyDocumentXml(const std::wstring &name) {
  return L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><UIRoot><" + name + L"><Elements></Elements></" + name +
         L"></UIRoot>";
}

std::wstring ElementsQuery(const std::wstring &name) { return L"/UIRoot/" + name + L"/Elements/Element"; }

XmlNodePtr ElementToNode(const XmlDocumentPtr &document, const Element &element) {
  const XmlNodePtr node = CreateNode(document, L"Element", {});
  const auto append = [&](const wchar_t *name, const std::wstring &text, LONG maxLength = 0) {
    AppendChild(node, CreateNodeWithMaxLength(document, name, text, maxLength));
  };
  append(L"Head", element.Head, element.HeadMaxLength);
  append(L"ToolTip", element.ToolTip, element.ToolTipMaxLength);
  append(L"ActionType", element.ActionType);
  append(L"ActionParams", element.ActionParams);
  append(L"ActionParamsBackup", element.ActionParamsBackup);
  append(L"Image", element.Image);
  append(L"Position", IntToText(static_cast<std::int32_t>(element.Position)));
  return node;
}

Element NodeToElement(const XmlNodePtr &node) {
  Element element;
  element.Head = ChildText(node, L"Head");
  element.HeadMaxLength = Number(ChildAttribute(node, L"Head", L"MaxLength"));
  element.ActionType = ChildText(node, L"ActionType");
  element.ActionParams = ChildText(node, L"ActionParams");
  element.Image = ChildText(node, L"Image");
  element.ToolTip = ChildText(node, L"ToolTip");
  element.ToolTipMaxLength = Number(ChildAttribute(node, L"ToolTip", L"MaxLength"));
  element.Position = static_cast<std::uint32_t>(Number(ChildText(node, L"Position")));
  return element;
}

DocumentReading ReadDocument(const std::wstring &name, bool force) {
  if (!IsDocumentName(name)) {
    LogError("Document: \"%S\" can't be the name of a document", name.c_str());
    return {};
  }
  if (force || PathIsMissing(DocumentPath(name)))
    ApplyStubs(name);
  return ReadFile(name);
}

ElementList LoadDocument(const std::wstring &name, bool force) { return ReadDocument(name, force).elements; }

void SaveDocument(const ElementList &list, const std::wstring &name) {
  if (!IsDocumentName(name))
    return;
  const XmlDocumentPtr document = LoadXmlString(EmptyDocumentXml(name));
  const XmlNodePtr elements = SelectNode(document, L"/UIRoot/" + name + L"/Elements");
  if (elements == nullptr)
    return; // the name is none that XML takes
  for (const Element &element : list)
    AppendChild(elements, ElementToNode(document, element));
  MakeUserFolder();
  SaveXmlFile(document, DocumentPath(name));
}

} // namespace lumenor
