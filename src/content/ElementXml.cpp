#include "content/ElementXml.h"

#include <cstdlib>
#include <map>
#include <utility>

#include "system/Text.h"

namespace lumenor {

namespace {

LONG Number(const std::wstring &text) { return ::_wtoi(text.c_str()); }

/// What an entry is read from, the first child of each name. One query finds them all: a query takes the platform much
/// longer than the reading of what it finds.
class Children {
public:
  explicit Children(const XmlNodePtr &node) {
    // No more than these: a file may hold millions of children.
    for (XmlNodePtr &child :
         SelectNodes(node, L"Head[1]|ToolTip[1]|ActionType[1]|ActionParams[1]|Image[1]|Position[1]"))
      nodes.emplace(NodeName(child), std::move(child));
  }

  std::wstring Text(const wchar_t *name) const {
    const auto found = nodes.find(name);
    return found == nodes.end() ? std::wstring() : NodeText(found->second);
  }

  LONG MaxLength(const wchar_t *name) const {
    const auto found = nodes.find(name);
    return found == nodes.end() ? 0 : Number(NodeAttribute(found->second, L"MaxLength"));
  }

private:
  std::map<std::wstring, XmlNodePtr> nodes;
};

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
  const Children children(node);
  Element element;
  element.Head = children.Text(L"Head");
  element.HeadMaxLength = children.MaxLength(L"Head");
  element.ActionType = children.Text(L"ActionType");
  element.ActionParams = children.Text(L"ActionParams");
  element.Image = children.Text(L"Image");
  element.ToolTip = children.Text(L"ToolTip");
  element.ToolTipMaxLength = children.MaxLength(L"ToolTip");
  element.Position = static_cast<std::uint32_t>(Number(children.Text(L"Position")));
  return element;
}

} // namespace lumenor
