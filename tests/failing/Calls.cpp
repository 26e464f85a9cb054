#include "failing/Calls.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "failing/Blocks.h"
#include "failing/ProductCode.h"
#include "system/Windows.h"

namespace lumenor::failing {

namespace {

std::deque<PlatformCall> calls;

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

bool IsCounted(bool isAllocation) {
  if (!state.armed.load(std::memory_order_relaxed) || isAllocation != (state.kind == Kind::Memory))
    return false;
  return state.kind == Kind::OtherCalls ? !IsMainThread() : IsMainThread() && state.ownCode == 0;
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

// What the thunks jump to, with the function's PlatformCall in r11. The arguments in registers stay where the callee
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

/// Whether the call fails. `frame` is where it will return to, and behind that its first four arguments.
extern "C" int LumenorFails(PlatformCall *call, void **frame) {
  if (!IsCounted(false) || !IsProductCode(frame[0]))
    return 0;
  ++call->calls;
  Site site = {call, frame[0]};
  if (state.kind == Kind::Calls && state.number == 0) {
    site.path = PathToHere();
    Note(site);
  }
  if (!Count(site))
    return 0;
  if (call->how->actsAllTheSame) {
    const auto function = reinterpret_cast<std::uint64_t (*)(void *, void *, void *, void *)>(call->target);
    function(frame[1], frame[2], frame[3], frame[4]);
  }
  if (call->how->lastError != 0)
    ::SetLastError(call->how->lastError);
  return 1;
}

namespace {

/// A thunk that puts `call` into r11 and jumps to the code above.
void *MakeThunk(PlatformCall *call) {
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
  put({0x49, 0xbb}); // mov r11, call
  putAddress(call);
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

void StandBetween(const char *name, void **slot) {
  const Failing *const how = FindFailing(name);
  PlatformCall &call = calls.emplace_back(PlatformCall{*slot, how == nullptr ? 0 : how->answer, how, name, slot});
  if (how != nullptr)
    Write(slot, MakeThunk(&call));
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
        StandBetween(reinterpret_cast<const char *>(base + name->u1.AddressOfData + sizeof(WORD)), slot);
  }
}

const std::deque<PlatformCall> &PlatformCalls() { return calls; }

void *Redirect(const char *name, void *target) {
  for (PlatformCall &call : calls)
    if (call.name == name) {
      if (call.how == nullptr)
        Write(call.slot, target);
      return std::exchange(call.target, target);
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
  if (IsCounted(true) && Count({}))
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
