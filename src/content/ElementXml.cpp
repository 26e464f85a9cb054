#include "content/ElementXml.h"

#include <cstdlib>

#include "system/Text.h"

namespace lumenor {

namespace {

LONG Number(const std::wstring &text) { return ::_wtoi(text.c_str()); }

} // namespace

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

} // namespace lumenor
