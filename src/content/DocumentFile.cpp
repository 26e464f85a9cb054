#include "content/DocumentFile.h"

#include "content/DocumentNames.h"
#include "content/ElementXml.h"
#include "system/Paths.h"
#include "system/Product.h"

namespace lumenor {

namespace {

/// Failures are left to the save, which then can't write the file.
void MakeUserFolder() {
  for (const wchar_t *folder : {product::makerFolder, product::userFolder})
    ::CreateDirectoryW(ExpandPath(folder).c_str(), nullptr);
}

std::wstring ListQuery(const std::wstring &name) { return L"/UIRoot/" + name + L"/Elements"; }

} // namespace

std::wstring DocumentPath(const std::wstring &name) { return ExpandPath(product::userFolder) + L"\\" + name + L".xml"; }

bool DocumentExists(const std::wstring &name) { return PathExists(DocumentPath(name)); }

std::wstring EmptyDocumentXml(const std::wstring &name) {
  return L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><UIRoot><" + name + L"><Elements></Elements></" + name +
         L"></UIRoot>";
}

std::wstring ElementsQuery(const std::wstring &name) { return ListQuery(name) + L"/Element"; }

DocumentReading ReadDocument(const std::wstring &name) {
  const std::wstring path = DocumentPath(name);
  const XmlDocumentPtr document = LoadXmlFileWhenFree(path);
  if (document == nullptr)
    return {PathIsMissing(path) ? DocumentState::Missing : DocumentState::Unreadable, {}};
  if (SelectNode(document, ListQuery(name)) == nullptr)
    return {DocumentState::Unreadable, {}};
  DocumentReading reading{DocumentState::Read, {}};
  for (const XmlNodePtr &node : SelectNodes(document, ElementsQuery(name)))
    reading.elements.push_back(NodeToElement(node));
  return reading;
}

void SaveDocument(const ElementList &list, const std::wstring &name) {
  if (!IsDocumentName(name))
    return;
  const XmlDocumentPtr document = LoadXmlString(EmptyDocumentXml(name));
  const XmlNodePtr elements = SelectNode(document, ListQuery(name));
  if (elements == nullptr)
    return; // XML doesn't take the name
  for (const Element &element : list)
    AppendChild(elements, ElementToNode(document, element));
  MakeUserFolder();
  SaveXmlFile(document, DocumentPath(name));
}

} // namespace lumenor
