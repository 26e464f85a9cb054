#include "failing/Calls.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "failing/Blocks.h"
#include "failing/Methods.h"
#include "failing/ProductCode.h"
#include "system/Windows.h"

#include <wrl/client.h>

namespace lumenor::failing {

/// A slot of the import table, or of a class's table of methods. The first two fields are read by the assembler code
/// below.
struct Passage {
  void *target;         // where a call goes that doesn't fail
  std::uint64_t answer; // of a call that fails
  const PlatformCall *call;
  void **slot;
};

namespace {

std::deque<PlatformCall> calls;

std::deque<Passage> passages;

// Read in the middle of calls of the platform, so nothing here may call it: the last error has to stay as it is.
struct State {
  DWORD mainThread = 0;
  std::atomic<bool> armed = false;
  Kind kind = Kind::Calls;
  std::uint64_t number = 0;
  std::atomic<std::uint64_t> counted = 0;
  int ownCode = 0; // of the main thread
  bool hasFailed = false;
  Site failed = {};
  std::vector<Site> sites;
  std::array<void *, 32> stack = {};
  int stackSize = 0;
};

State state;

bool IsMainThread() { return static_cast<DWORD>(__readgsqword(0x48)) == state.mainThread; }

/// Whether what comes now is counted: `kind` as on the main thread.
bool IsCounted(Kind kind) {
  if (!state.armed.load(std::memory_order_relaxed))
    return false;
  if (!IsMainThread())
    return kind == Kind::Calls && state.kind == Kind::OtherCalls;
  return kind == state.kind && state.ownCode == 0;
}

/// A number for the product's nearest functions on the stack: calls of helpers differ by who asks for the help.
std::uint64_t PathToHere() {
  constexpr int nearest = 4;
  std::array<void *, 12> stack = {};
  const int size = ::CaptureStackBackTrace(1, static_cast<DWORD>(stack.size()), stack.data(), nullptr);
  std::uint64_t path = 0;
  for (int i = 0, taken = 0; i < size && taken < nearest; ++i)
    if (const auto place = stack[static_cast<std::size_t>(i)]; IsProductCode(place)) {
      path = path * 1'000'003 + reinterpret_cast<std::uintptr_t>(place);
      ++taken;
    }
  return path;
}

/// Counts one; whether it is the one that fails.
bool Count(const Site &site) {
  const std::uint64_t number = ++state.counted;
  if (number != state.number || state.hasFailed)
    return false;
  state.hasFailed = true;
  state.failed = site;
  state.stackSize = ::CaptureStackBackTrace(1, static_cast<DWORD>(state.stack.size()), state.stack.data(), nullptr);
  return true;
}

void Note(const Site &site) {
  ++state.ownCode; // the list grows by the operator below
  state.sites.push_back(site);
  --state.ownCode;
}

} // namespace

// What the thunks jump to, with the slot's Passage in r11. The arguments in registers stay where the callee
// expects them; the stack above isn't touched, so that the function finds the rest of its arguments there.
asm(R"(
  .text
  .globl LumenorFailingCall
  .def LumenorFailingCall; .scl 2; .type 32; .endef
  .seh_proc LumenorFailingCall
LumenorFailingCall:
  subq $0x88, %rsp
  .seh_stackalloc 0x88
  .seh_endprologue
  movq %rcx, 0x90(%rsp)
  movq %rdx, 0x98(%rsp)
  movq %r8, 0xa0(%rsp)
  movq %r9, 0xa8(%rsp)
  movups %xmm0, 0x20(%rsp)
  movups %xmm1, 0x30(%rsp)
  movups %xmm2, 0x40(%rsp)
  movups %xmm3, 0x50(%rsp)
  movq %r11, 0x60(%rsp)
  movq %r11, %rcx
  leaq 0x88(%rsp), %rdx
  call LumenorFails
  testl %eax, %eax
  movq 0x60(%rsp), %r11
  jne 1f
  movups 0x20(%rsp), %xmm0
  movups 0x30(%rsp), %xmm1
  movups 0x40(%rsp), %xmm2
  movups 0x50(%rsp), %xmm3
  movq 0x90(%rsp), %rcx
  movq 0x98(%rsp), %rdx
  movq 0xa0(%rsp), %r8
  movq 0xa8(%rsp), %r9
  addq $0x88, %rsp
  jmpq *(%r11)
1:
  movq 8(%r11), %rax
  addq $0x88, %rsp
  ret
  .seh_endproc
)");

extern "C" void LumenorFailingCall();

namespace {

/// What the call does besides its answer; `arguments` are its own, the object of a method first.
void Fail(const Passage &passage, void **arguments) {
  const Failing &how = *passage.call->how;
  if (how.actsAllTheSame) {
    using Function = std::uint64_t (*)(void *, void *, void *, void *, void *, void *);
    reinterpret_cast<Function>(passage.target)(arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                                               arguments[5]);
  }
  for (std::size_t i = 0; how.outPointers >> i != 0; ++i)
    if (auto **const out = static_cast<void **>(arguments[1 + i]); (how.outPointers >> i & 1) != 0 && out != nullptr)
      *out = nullptr;
  if (how.lastError != 0)
    ::SetLastError(how.lastError);
}

} // namespace

/// Whether the call fails. `frame` is where it will return to, and behind that its arguments.
extern "C" int LumenorFails(const Passage *passage, void **frame) {
  if (!IsCounted(passage->call->isMethod ? Kind::Methods : Kind::Calls) || !IsProductCode(frame[0]))
    return 0;
  Site site = {passage->call, frame[0]};
  if (state.kind != Kind::OtherCalls && state.number == 0) {
    site.path = PathToHere();
    Note(site);
  }
  if (!Count(site))
    return 0;
  Fail(*passage, frame + 1);
  return 1;
}

namespace {

/// A thunk that puts `passage` into r11 and jumps to the code above.
void *MakeThunk(const Passage *passage) {
  static auto *next =
      static_cast<std::uint8_t *>(::VirtualAlloc(nullptr, 1 << 16, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
  std::uint8_t *const thunk = next;
  const auto put = [](std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes)
      *next++ = byte;
  };
  const auto putAddress = [](const void *address) {
    std::memcpy(next, &address, sizeof address);
    next += sizeof address;
  };
  put({0x49, 0xbb}); // mov r11, passage
  putAddress(passage);
  put({0x48, 0xb8}); // mov rax, LumenorFailingCall
  putAddress(reinterpret_cast<void *>(&LumenorFailingCall));
  put({0xff, 0xe0}); // jmp rax
  return thunk;
}

void Write(void **slot, void *value) {
  DWORD protection = 0;
  ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
  *slot = value;
  ::VirtualProtect(slot, sizeof *slot, protection, &protection);
}

const PlatformCall &AddFunction(const char *name) {
  return calls.emplace_back(PlatformCall{name, FindFailing(name), WhyNotFailing(name), false});
}

void StandBetween(void **slot, const PlatformCall &call) {
  const Passage &passage =
      passages.emplace_back(Passage{*slot, call.how == nullptr ? 0 : call.how->answer, &call, slot});
  if (call.how != nullptr)
    Write(slot, MakeThunk(&passage));
}

/// A class of another program may go with the last apartment and come again later, without the thunks.
void KeepLoaded(const void *table) {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<const wchar_t *>(table), &module);
}

void StandBetween(const Method &method, void **table) {
  void **const slot = table + method.slot;
  const auto isIt = [&](const PlatformCall &call) { return call.how == &method.how; };
  if (std::ranges::find(passages, slot, &Passage::slot) != passages.end())
    return;
  KeepLoaded(table);
  StandBetween(slot, *std::ranges::find_if(calls, isIt));
}

} // namespace

void StandBetween() {
  state.mainThread = ::GetCurrentThreadId();
  state.sites.reserve(100'000);
  auto *const base = reinterpret_cast<std::uint8_t *>(::GetModuleHandleW(nullptr));
  const auto &headers =
      *reinterpret_cast<const IMAGE_NT_HEADERS *>(base + reinterpret_cast<const IMAGE_DOS_HEADER *>(base)->e_lfanew);
  const DWORD imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto *module = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR *>(base + imports); module->Name != 0; ++module) {
    if (::_stricmp(reinterpret_cast<const char *>(base + module->Name), "msvcrt.dll") == 0)
      continue; // the C library's memory is that of operator new, or of libraries
    auto *slot = reinterpret_cast<void **>(base + module->FirstThunk);
    for (auto *name = reinterpret_cast<const IMAGE_THUNK_DATA *>(base + module->OriginalFirstThunk);
         name->u1.AddressOfData != 0; ++name, ++slot)
      if (!IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal))
        StandBetween(slot, AddFunction(reinterpret_cast<const char *>(base + name->u1.AddressOfData + sizeof(WORD))));
  }
  for (const Method &method : Methods())
    calls.push_back({std::string(method.how.name), &method.how, {}, true});
  for (const OtherMethod &method : OtherMethods())
    calls.push_back({std::string(method.name), nullptr, method.why, true});
}

void StandBetween(IUnknown *object) {
  for (const Method &method : Methods()) {
    Microsoft::WRL::ComPtr<IUnknown> asked;
    if (SUCCEEDED(object->QueryInterface(method.interfaceId, &asked)) && asked)
      StandBetween(method, *reinterpret_cast<void ***>(asked.Get()));
  }
}

const std::deque<PlatformCall> &PlatformCalls() { return calls; }

void *Redirect(const char *name, void *target) {
  for (Passage &passage : passages)
    if (passage.call->name == name) {
      if (passage.call->how == nullptr)
        Write(passage.slot, target);
      return std::exchange(passage.target, target);
    }
  std::abort(); // no such import
}

void Arm(Kind kind, std::uint64_t number) {
  state.kind = kind;
  state.number = number;
  state.counted = 0;
  state.hasFailed = false;
  state.sites.clear();
  state.armed = true;
}

void Disarm() { state.armed = false; }

void ArmAgain() { state.armed = true; }

const std::vector<Site> &Counted() { return state.sites; }

std::uint64_t CountedSoFar() { return state.counted; }

bool HasFailed() { return state.hasFailed; }

const Site &FailedSite() { return state.failed; }

std::string DescribeFailed() {
  std::string text = state.failed.call == nullptr ? "operator new" : state.failed.call->name;
  for (int i = 0; i < state.stackSize; ++i)
    if (const void *const place = state.stack[static_cast<std::size_t>(i)]; IsProductCode(place))
      text += "\n    in " + DescribeCode(place);
  return text;
}

OwnCode::OwnCode() {
  if (IsMainThread())
    ++state.ownCode;
}

OwnCode::~OwnCode() {
  if (IsMainThread())
    --state.ownCode;
}

ProductsTurn::ProductsTurn() : ownCode(std::exchange(state.ownCode, 0)) {}

ProductsTurn::~ProductsTurn() { state.ownCode = ownCode; }

} // namespace lumenor::failing

// The program's memory. Each block has a word ahead of it that tells whose it is: what the test holds isn't left
// behind.

namespace {

constexpr std::size_t headBytes = 16; // as much as blocks are aligned to

std::uint64_t &HeadOf(void *block) {
  return *reinterpret_cast<std::uint64_t *>(static_cast<std::uint8_t *>(block) - headBytes);
}

} // namespace

void *operator new(std::size_t size) {
  using namespace lumenor::failing;
  if (IsCounted(Kind::Memory) && Count({}))
    throw std::bad_alloc();
  auto *const memory = static_cast<std::uint8_t *>(std::malloc(size + headBytes));
  if (memory == nullptr)
    throw std::bad_alloc();
  void *const block = memory + headBytes;
  HeadOf(block) = IsMainThread() && state.ownCode > 0 ? 0 : 1;
  if (HeadOf(block) != 0)
    BlockGiven(block);
  return block;
}

void operator delete(void *block) noexcept {
  if (block == nullptr)
    return;
  if (HeadOf(block) != 0)
    lumenor::failing::BlockTaken(block);
  std::free(static_cast<std::uint8_t *>(block) - headBytes);
}

void operator delete(void *block, std::size_t) noexcept { operator delete(block); }
