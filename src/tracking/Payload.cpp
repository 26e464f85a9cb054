#include "tracking/Payload.h"

#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Text.h"

namespace lumenor {

namespace {

constexpr wchar_t temporaryFile[] = L"ruqDock.tmp";
constexpr wchar_t emptyPayload[] = L"<payload></payload>";

constexpr wchar_t declarationName[] = L"xml";
constexpr wchar_t declaration[] =
    L"version=\"1.0\" encoding = \"utf-8\""; // the blanks are part of the collector's format

/// A document that was read from a file has the platform's own spelling of the declaration, if it has one at all.
void PutDeclaration(const XmlDocumentPtr &document) {
  const XmlNodePtr first = FirstChild(document);
  if (NodeName(first) == declarationName)
    RemoveChild(document, first);
  InsertBefore(document, CreateProcessingInstruction(document, declarationName, declaration), FirstChild(document));
}

/// The rows of a record, in their order; some belong to some actions only.
XmlAttributes RowsOf(const TrackRecord &record) {
  XmlAttributes rows = {{L"SessionID", record.SessionID},
                        {L"Feature", record.Feature},
                        {L"Action", record.Action},
                        {L"TrackTimestamp", FormatUtcTime(record.TrackTimestamp)}};
  if (record.Action == L"Open" || record.Action == L"Close")
    rows.emplace_back(L"SubSessionID", UIntToText(record.SubSessionID));
  else
    rows.emplace_back(L"ActionCount", UIntToText(record.ActionCount));
  if (record.Action == L"Click") {
    rows.emplace_back(L"TouchPoint", record.TouchPoint);
    if (!record.SubFeature.empty())
      rows.emplace_back(L"SubFeature", record.SubFeature);
  }
  if (!record.ActionType.empty() && !record.ActionParams.empty()) {
    rows.emplace_back(L"ActionType", record.ActionType);
    rows.emplace_back(L"ActionParams", record.ActionParams);
  }
  return rows;
}

/// A failure is left to the save, which then can't write the file.
void MakePayloadFolder() {
  const std::wstring folder = ExpandPath(product::payloadFolder);
  if (PathExists(folder))
    return;
  LogInfo("Creating directory %S", folder.c_str());
  ::CreateDirectoryW(folder.c_str(), nullptr);
}

} // namespace

std::wstring PayloadPath() { return ExpandPath(std::wstring(product::payloadFolder) + temporaryFile); }

std::optional<Payload> Payload::Open() {
  const std::wstring path = PayloadPath();
  const XmlDocumentPtr document = PathIsMissing(path) ? LoadXmlString(emptyPayload) : LoadXmlFileWhenFree(path);
  const XmlNodePtr root = SelectNode(document, L"/payload");
  if (root == nullptr) {
    LogError("RUQMENT: no payload in %S", path.c_str());
    return std::nullopt;
  }
  PutDeclaration(document);
  return Payload(document, root);
}

XmlNodePtr Payload::MakeNode(const wchar_t *name, const XmlAttributes &attributes, const XmlAttributes &rows) const {
  const XmlNodePtr node = CreateNode(document, name, {}, attributes);
  for (const auto &[rowName, value] : rows)
    AppendChild(node, CreateNode(document, L"attribute", {}, {{L"name", rowName}, {L"value", value}}));
  return node;
}

void Payload::InsertSessionInfo(const std::wstring &appName, const XmlAttributes &facts) {
  InsertBefore(root, MakeNode(L"session-tracking-info", {{L"appName", appName}}, facts), FirstChild(root));
}

void Payload::Append(const TrackRecord &record) {
  const XmlAttributes attributes = {
      {L"name", record.Name}, {L"type", record.Type}, {L"sequence-id", UIntToText(record.SequenceId)}};
  AppendChild(root, MakeNode(L"element", attributes, RowsOf(record)));
}

void Payload::Save() const {
  MakePayloadFolder();
  SaveXmlFile(document, PayloadPath());
}

} // namespace lumenor
