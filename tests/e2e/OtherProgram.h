#pragma once
// Another program that changes the user's files: the platform's command interpreter, or this one.

#include <string>

namespace lumenor::e2e {

/// Lets another process copy the file `from` over `to`, and waits for its end. It tries again while `to` is in use;
/// false when it still failed after 20 s.
bool OtherProgramCopies(const std::wstring &from, const std::wstring &to);

/// Replaces the content of the file by `bytes`, from this process, and tries again while a reader has it open.
void Overwrite(const std::wstring &path, const std::string &bytes);

/// Lets another process delete the file `path` in the same way.
bool OtherProgramDeletes(const std::wstring &path);

} // namespace lumenor::e2e
