#pragma once
// What tests of the jump list need of the shell: to hear the calls of its objects and let one of them fail, and links
// to make and to look at.

#include <string>
#include <vector>

#include "support/JumpLists.h"
#include "support/OperationSpy.h"
#include "system/HResultError.h"
#include "system/Windows.h"

#include <propkey.h>
#include <propsys.h>
#include <shobjidl.h>

namespace lumenor::tests {

using Steps = std::vector<std::string>;

/// Bytes that repeat themselves at no power of two.
inline std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<char>(i % 251);
  return bytes;
}

/// The names of the operations that were called, in order, and the one that is to fail.
struct HeardSteps {
  static inline Steps names;
  static inline std::string failing;
  static inline HRESULT failure = S_OK;
  static inline int depth = 0; // of heard calls in each other

  static void Reset() {
    names.clear();
    failing.clear();
  }
};

/// Hears operations of one class's table and passes them on; what the heard ones call themselves isn't heard. `id`
/// tells the tables of a test apart. Every operation takes at most five arguments, each of which fits a register.
template <int id> class StepSpy {
public:
  explicit StepSpy(IUnknown *object) : spy(object) {}

  /// Hears the operation at `slot`, counted from QueryInterface as 0.
  template <std::size_t slot> StepSpy &Hear(const char *name) {
    Entry<slot>::name = name;
    Entry<slot>::former = spy.Exchange(slot, &Entry<slot>::Call);
    return *this;
  }

private:
  template <std::size_t slot> struct Entry {
    using Function = HRESULT(STDMETHODCALLTYPE *)(void *, void *, void *, void *, void *);
    static inline Function former = nullptr;
    static inline const char *name = nullptr;

    static HRESULT STDMETHODCALLTYPE Call(void *self, void *a, void *b, void *c, void *d) {
      if (HeardSteps::depth > 0)
        return former(self, a, b, c, d);
      HeardSteps::names.emplace_back(name);
      if (HeardSteps::failing == name)
        return HeardSteps::failure;
      ++HeardSteps::depth;
      const HRESULT result = former(self, a, b, c, d);
      --HeardSteps::depth;
      return result;
    }
  };

  OperationSpy spy;
};

template <typename Interface> Microsoft::WRL::ComPtr<Interface> MakeObject(REFCLSID id) {
  Microsoft::WRL::ComPtr<Interface> object;
  ThrowIfFailed(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)));
  return object;
}

/// Hears what is done with shell links; `Releases` of theirs aren't heard.
class LinkSteps {
public:
  LinkSteps() {
    HeardSteps::Reset();
    link.Hear<3>("GetPath").Hear<6>("GetDescription").Hear<7>("SetDescription").Hear<8>("GetWorkingDirectory");
    link.Hear<9>("SetWorkingDirectory").Hear<10>("GetArguments").Hear<11>("SetArguments").Hear<17>("SetIconLocation");
    link.Hear<19>("Resolve").Hear<20>("SetPath");
    properties.Hear<6>("SetValue").Hear<7>("Commit");
    file.Hear<5>("Load");
  }

private:
  template <typename Interface> static Microsoft::WRL::ComPtr<Interface> Link() {
    return MakeObject<Interface>(CLSID_ShellLink);
  }

  StepSpy<0> link{Link<IShellLinkW>().Get()};
  StepSpy<1> properties{Link<IPropertyStore>().Get()};
  StepSpy<2> file{Link<IPersistFile>().Get()};
};

/// A task whose link has no more than this.
inline JumpTask Task(const std::wstring &title, const std::wstring &path, const std::wstring &arguments,
                     const std::wstring &icon) {
  return {title, path, arguments, {}, {}, icon, 0};
}

/// What was set on the link, its title too.
inline JumpTask Described(IShellLinkW *link) {
  wchar_t text[8192] = {};
  JumpTask task;
  link->GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH);
  task.path = text;
  link->GetArguments(text, 8192);
  task.arguments = text;
  link->GetWorkingDirectory(text, 8192);
  task.workingFolder = text;
  link->GetDescription(text, 8192);
  task.description = text;
  link->GetIconLocation(text, 8192, &task.iconIndex);
  task.icon = text;
  Microsoft::WRL::ComPtr<IPropertyStore> properties;
  ThrowIfFailed(link->QueryInterface(IID_PPV_ARGS(&properties)));
  PROPVARIANT title{};
  properties->GetValue(PKEY_Title, &title);
  if (title.vt == VT_LPWSTR)
    task.title = title.pwszVal;
  ::PropVariantClear(&title);
  return task;
}

/// Writes a shortcut file of `shortcut` but for the title, which no file has.
inline void WriteShortcut(const std::wstring &path, const JumpTask &shortcut) {
  const auto link = MakeObject<IShellLinkW>(CLSID_ShellLink);
  if (!shortcut.path.empty())
    ThrowIfFailed(link->SetPath(shortcut.path.c_str()));
  ThrowIfFailed(link->SetArguments(shortcut.arguments.c_str()));
  ThrowIfFailed(link->SetWorkingDirectory(shortcut.workingFolder.c_str()));
  ThrowIfFailed(link->SetDescription(shortcut.description.c_str()));
  ThrowIfFailed(link->SetIconLocation(shortcut.icon.c_str(), shortcut.iconIndex));
  Microsoft::WRL::ComPtr<IPersistFile> file;
  ThrowIfFailed(link.As(&file));
  ThrowIfFailed(file->Save(path.c_str(), TRUE));
}

} // namespace lumenor::tests
