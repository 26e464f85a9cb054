#pragma once
// The payload files that the dock leaves for the collector, as text. Times and identifiers, which no test can know, are
// checked by themselves; the rest is compared whole.

#include <string>
#include <utility>
#include <vector>

#include "e2e/Installation.h"

namespace lumenor::e2e {

/// The folder of the payloads.
std::wstring PayloadFolder(const Installation &installation);

/// The file of the payload that is being written.
std::wstring OpenPayload(const Installation &installation);

/// The names of the payloads that were handed over.
std::vector<std::wstring> ClosedPayloads(const Installation &installation);

/// An element of a payload, with the rows that follow its session, feature, action and time.
std::string ElementText(const std::string &name, const std::string &type, int sequence, const std::string &action,
                        const std::vector<std::pair<std::string, std::string>> &rows);

/// The opening or closing of the dock.
std::string WindowElement(int sequence, const std::string &action);

/// A whole payload of these elements, and of the header of a closed one where `header` isn't empty.
std::string PayloadText(const std::vector<std::string> &elements, const std::string &header = {});

/// The header of a closed payload.
std::string HeaderText(const std::string &brand, const std::string &platform, const std::string &applicationId);

/// `payload` with each time as "TIME" and each session's identifier as "SESSION", and each element on a line as
/// PayloadText has it.
std::string Masked(const std::string &payload);

/// The values of the rows of that name, in their order.
std::vector<std::string> ValuesOf(const std::string &payload, const std::string &row);

/// Whether the text is a UUID as the platform writes it.
bool IsUuid(const std::string &text);

/// The time in a text of a payload or of the registry, as a file time (100 nanoseconds); 0 when it isn't of that form,
/// which has no leading zeros.
ULONGLONG TimeOf(const std::string &text);

/// The present as a file time, cut to whole seconds.
ULONGLONG Now();

inline constexpr ULONGLONG oneSecond = 10'000'000; // of a file time

} // namespace lumenor::e2e
