#pragma once
// Builds a content document from the stub files that a content service writes to locale folders. Stubs are only read.
// Needs a thread that has initialised COM.

#include <exception>
#include <string>
#include <vector>

#include "content/Conditions.h"
#include "content/Element.h"

namespace lumenor {

/// A stub file isn't well-formed XML.
class InvalidDstbException : public std::exception {
public:
  const char *what() const noexcept override { return "InvalidDstbException"; }
};

/// Writes the document again from its stubs in the user's chain of locale folders, also when none applies. A name that
/// no document can have is logged, and nothing is written. Raises HResultError; the document's file is then unchanged.
void ApplyStubs(const std::wstring &documentName);

/// The bare file names of the document's stubs in a locale folder, in the order in which the platform lists them; none
/// without the folder. Raises HResultError when the folder can't be listed to its end.
std::vector<std::wstring> FindStubFiles(const std::wstring &documentName, const std::wstring &locale);

/// The full path of a stub file.
std::wstring StubFilePath(const std::wstring &locale, const std::wstring &fileName);

/// Appends the entries of the locale folder's stubs whose conditions are met. A stub that isn't XML is logged and
/// skipped. Raises HResultError.
void ProcessStubsInLocale(const std::wstring &documentName, const std::wstring &locale, ElementList &elements);

/// The entry of a stub, and its conditions into `conditions`; an empty entry without conditions when the stub has none
/// for this document. Raises InvalidDstbException when the file isn't XML, and HResultError.
Element ReadStubFile(const std::wstring &documentName, const std::wstring &path, std::vector<Condition> &conditions);

} // namespace lumenor
