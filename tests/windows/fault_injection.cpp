// Each watched import is replaced by a function of the same type that asks whether it is to fail, keeps the books and
// calls the original. Places are found by walking the stack with the system's unwinding tables, which every 64-bit
// program carries.
#include "fault_injection.h"

#include "extent.h"

#include "windows/plugin/import_patch.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <tuple>
#include <unordered_set>
#include <utility>

#include <commctrl.h>
#include <malloc.h>
#include <mmsystem.h>
#include <shlobj.h>

namespace faults {
namespace {

enum class Mode { Idle, Discovering, FailingNewPlaces, Failing, Short, Exhausted };

// Who gives back what was acquired is mostly found so near; with all frames each instrument and each option has its own
// places in what they share.
constexpr int kNearFrames = 2;
constexpr int kAllFrames = 64;

struct State {
    Mode mode = Mode::Idle;
    std::uint64_t calls = 0;
    Call target{};
    bool reached = false;
    std::size_t bytesLeft = 0; // when exhausted
    std::vector<Call> found;
    std::unordered_set<std::uint64_t> places;
    DWORD64 first = 0; // the plugin's addresses
    DWORD64 last = 0;
    int frames = 0; // of the plugin that tell a place
    int step = 1;   // of how many new places of a function one fails
    std::map<std::string, int> newPlaces;
    std::map<std::pair<Kind, std::uintptr_t>, int> held;
    std::vector<std::string> misuses;
};

State* state = nullptr;

void stepOut(CONTEXT& context) {
    DWORD64 base = 0;
    if (PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context.Rip, &base, nullptr)) {
        void* handler = nullptr;
        DWORD64 frame = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handler, &frame, nullptr);
    } else { // a function without a frame
        context.Rip = *reinterpret_cast<const DWORD64*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
    }
}

// A number for the function and the nearest of the plugin's frames that called it, up to the first frame of somebody
// else.
std::uint64_t placeOf(const char* function) {
    std::uint64_t hash = 14695981039346656037u; // FNV-1a
    const auto add = [&hash](std::uint64_t value) { hash = (hash ^ value) * 1099511628211u; };
    for (const char* c = function; *c != 0; ++c)
        add(static_cast<unsigned char>(*c));
    CONTEXT context;
    RtlCaptureContext(&context);
    bool inside = false;
    int frames = 0;
    for (int depth = 0; depth < 64 && frames < state->frames && context.Rip != 0; ++depth, stepOut(context)) {
        const bool ours = context.Rip >= state->first && context.Rip < state->last;
        if (inside && !ours)
            break;
        inside = ours;
        if (ours) {
            add(context.Rip - state->first);
            ++frames;
        }
    }
    return hash;
}

bool isNewPlace(Kind kind, const char* function) {
    if (!state->places.insert(placeOf(function)).second || state->newPlaces[function]++ % state->step != 0)
        return false;
    state->found.push_back({kind, function, state->calls});
    return true;
}

// One after the other: an exception takes memory, and a lock that fails is tried again.
bool mayFailNow(Kind kind) {
    return std::ranges::none_of(state->found, [kind](const Call& call) {
        return call.kind == kind && (kind == Kind::Memory || kind == Kind::Lock);
    });
}

bool isTarget(const char* function) {
    const std::uint64_t number = state->target.number;
    if ((number != 0 && number != state->calls) || state->target.function != function)
        return false;
    state->reached = true;
    state->mode = state->mode == Mode::Short ? Mode::Exhausted : Mode::Idle;
    return true;
}

bool decideFailure(Kind kind, const char* function) {
    ++state->calls;
    switch (state->mode) {
    case Mode::Discovering:
        isNewPlace(kind, function);
        return false;
    case Mode::FailingNewPlaces:
        return mayFailNow(kind) && isNewPlace(kind, function);
    case Mode::Failing:
    case Mode::Short:
        return isTarget(function);
    case Mode::Exhausted:
        return kind == Kind::GlobalMemory || kind == Kind::Drawing;
    default:
        return false;
    }
}

bool mustFail(Kind kind, const char* function) {
    const bool fails = state->mode != Mode::Idle && decideFailure(kind, function);
    if (fails)
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return fails;
}

template <class Handle>
std::uintptr_t numberOf(Handle handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

template <class Handle>
void acquired(Kind kind, Handle handle) {
    if (handle != Handle{})
        ++state->held[{kind, numberOf(handle)}];
}

// What was acquired before anybody watched is not in the books.
template <class Handle>
void released(Kind kind, Handle handle) {
    const auto entry = state->held.find({kind, numberOf(handle)});
    if (entry != state->held.end() && --entry->second == 0)
        state->held.erase(entry);
}

// Whether what is left when memory is exhausted is enough for a block, which takes it then.
bool isLeft(std::size_t bytes) {
    if (state->mode != Mode::Exhausted)
        return true;
    if (bytes > state->bytesLeft)
        return false;
    state->bytesLeft -= bytes;
    return true;
}

template <class Result>
Result failure(std::intptr_t value) {
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(value);
    else
        return static_cast<Result>(value);
}

// Names as template arguments, so that every watched function has a replacement of its own.
template <std::size_t kLength>
struct Name {
    char text[kLength];
    consteval Name(const char (&name)[kLength]) { std::copy_n(name, kLength, text); }
};

enum class Role { None, Acquires };

template <Name kName, Kind kKind, Role kRole, std::intptr_t kFailure, class Signature>
struct Failing;

template <Name kName, Kind kKind, Role kRole, std::intptr_t kFailure, class Result, class... Arguments>
struct Failing<kName, kKind, kRole, kFailure, Result(Arguments...)> {
    static inline Result (*original)(Arguments...) = nullptr;
    static Result call(Arguments... arguments) {
        if (mustFail(kKind, kName.text))
            return failure<Result>(kFailure);
        const Result result = original(arguments...);
        if constexpr (kRole == Role::Acquires)
            if (result != failure<Result>(kFailure))
                acquired(kKind, result);
        return result;
    }
};

// What is given back is the argument with that number.
template <Name kName, Kind kKind, std::size_t kArgument, class Signature>
struct Releasing;

template <Name kName, Kind kKind, std::size_t kArgument, class Result, class... Arguments>
struct Releasing<kName, kKind, kArgument, Result(Arguments...)> {
    static inline Result (*original)(Arguments...) = nullptr;
    static Result call(Arguments... arguments) {
        released(kKind, std::get<kArgument>(std::tie(arguments...)));
        return original(arguments...);
    }
};

void* allocate(std::size_t bytes) {
    if (mustFail(Kind::Memory, "malloc") || !isLeft(bytes))
        return nullptr;
    void* block = std::malloc(bytes);
    acquired(Kind::Memory, block);
    return block;
}

void release(void* block) {
    released(Kind::Memory, block);
    if (state->mode == Mode::Exhausted && block != nullptr)
        state->bytesLeft += _msize(block);
    std::free(block);
}

void* allocateZeroed(std::size_t count, std::size_t bytes) {
    if (mustFail(Kind::Memory, "calloc") || !isLeft(count * bytes))
        return nullptr;
    void* block = std::calloc(count, bytes);
    acquired(Kind::Memory, block);
    return block;
}

struct Reallocating {
    static inline void* (*original)(void*, std::size_t) = nullptr;
    static void* call(void* old, std::size_t bytes) {
        if (mustFail(Kind::Memory, "realloc") || !isLeft(bytes))
            return nullptr;
        void* block = original(old, bytes);
        if (block != nullptr || bytes == 0)
            released(Kind::Memory, old);
        acquired(Kind::Memory, block);
        return block;
    }
};

HGLOBAL WINAPI reallocateGlobal(HGLOBAL old, SIZE_T bytes, UINT flags) {
    if (mustFail(Kind::GlobalMemory, "GlobalReAlloc"))
        return nullptr;
    const HGLOBAL block = GlobalReAlloc(old, bytes, flags);
    if (block != nullptr)
        released(Kind::GlobalMemory, old);
    acquired(Kind::GlobalMemory, block);
    return block;
}

HGLOBAL WINAPI freeGlobal(HGLOBAL block) {
    if (state->held.contains({Kind::Lock, numberOf(block)}))
        state->misuses.push_back("GlobalFree of a locked block");
    released(Kind::GlobalMemory, block);
    return GlobalFree(block);
}

LPVOID WINAPI lockGlobal(HGLOBAL block) {
    if (mustFail(Kind::Lock, "GlobalLock"))
        return nullptr;
    const LPVOID data = GlobalLock(block);
    if (data != nullptr)
        acquired(Kind::Lock, block);
    return data;
}

// Bitmaps that the plugin has made itself: pens, brushes and fonts can be selected whenever they exist, and so can what
// was selected before.
HGDIOBJ WINAPI selectObject(HDC dc, HGDIOBJ object) {
    const bool isOwnBitmap =
        state->held.contains({Kind::Drawing, numberOf(object)}) && GetObjectType(object) == OBJ_BITMAP;
    if (isOwnBitmap && mustFail(Kind::Drawing, "SelectObject"))
        return nullptr;
    return SelectObject(dc, object);
}

HDC WINAPI beginPaint(HWND window, PAINTSTRUCT* paint) {
    const HDC dc = BeginPaint(window, paint);
    acquired(Kind::Window, dc);
    return dc;
}

BOOL WINAPI endPaint(HWND window, const PAINTSTRUCT* paint) {
    released(Kind::Window, paint->hdc);
    return EndPaint(window, paint);
}

// Nothing can go on after a crash.
void end(const char* how, DWORD64 at) {
    std::printf("The plugin %s (at +%llx) after call %llu, %s, had failed\n", how, at - state->first,
                state->target.number, state->target.function.c_str());
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 3);
}

void giveUp() {
    end("gave up", reinterpret_cast<DWORD64>(__builtin_return_address(0)));
}

// Whoever calls back into the plugin may swallow its crashes, so they are seen before.
LONG CALLBACK onException(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    const auto at = reinterpret_cast<DWORD64>(record.ExceptionAddress);
    const bool within = at >= state->first && at < state->last;
    if ((within && record.ExceptionCode >> 28 == 0xC) || record.ExceptionCode == EXCEPTION_STACK_OVERFLOW)
        end("crashed", at);
    return EXCEPTION_CONTINUE_SEARCH;
}

struct Row {
    const char* function;
    void* replacement;
    void (*setOriginal)(void*) = nullptr;
};

template <class Watched>
Row row(const char* function) {
    return {function, reinterpret_cast<void*>(Watched::call),
            [](void* original) { Watched::original = reinterpret_cast<decltype(Watched::original)>(original); }};
}

template <class Function>
Row replaced(const char* function, Function* replacement) {
    return {function, reinterpret_cast<void*>(replacement)};
}

#define FAILING(function, kind, role, failure)                                                                         \
    row<Failing<#function, Kind::kind, Role::role, failure, decltype(function)>>(#function)
#define RELEASING(function, kind, argument)                                                                            \
    row<Releasing<#function, Kind::kind, argument, decltype(function)>>(#function)

const std::pair<const char*, std::vector<Row>> kWatched[] = { // by library
    {"msvcrt.dll",
     {replaced("abort", giveUp), replaced("malloc", allocate), replaced("calloc", allocateZeroed),
      FAILING(_aligned_malloc, Memory, Acquires, 0), row<Reallocating>("realloc"), replaced("free", release),
      RELEASING(_aligned_free, Memory, 0)}},
    {"kernel32.dll",
     {FAILING(GlobalAlloc, GlobalMemory, Acquires, 0), replaced("GlobalReAlloc", reallocateGlobal),
      replaced("GlobalFree", freeGlobal), replaced("GlobalLock", lockGlobal), RELEASING(GlobalUnlock, Lock, 0),
      FAILING(CreateActCtxA, Resource, Acquires, -1), FAILING(ActivateActCtx, Resource, None, 0),
      FAILING(FindResourceA, Resource, None, 0), FAILING(LoadResource, Resource, None, 0),
      FAILING(LockResource, Resource, None, 0), RELEASING(ReleaseActCtx, Resource, 0),
      FAILING(CreateDirectoryA, File, None, 0), FAILING(CreateFileA, File, Acquires, -1),
      FAILING(FlushFileBuffers, File, None, 0), FAILING(GetFileSizeEx, File, None, 0),
      FAILING(MoveFileExA, File, None, 0), FAILING(ReadFile, File, None, 0), FAILING(WriteFile, File, None, 0),
      RELEASING(CloseHandle, File, 0)}},
    {"gdi32.dll",
     {FAILING(CreateCompatibleBitmap, Drawing, Acquires, 0), FAILING(CreateCompatibleDC, Drawing, Acquires, 0),
      FAILING(CreateDIBSection, Drawing, Acquires, 0), FAILING(CreateFontA, Drawing, Acquires, 0),
      FAILING(CreateFontIndirectA, Drawing, Acquires, 0), FAILING(CreatePen, Drawing, Acquires, 0),
      FAILING(CreateRectRgnIndirect, Drawing, Acquires, 0), FAILING(CreateRoundRectRgn, Drawing, Acquires, 0),
      FAILING(CreateSolidBrush, Drawing, Acquires, 0), FAILING(BeginPath, Drawing, None, 0),
      FAILING(SaveDC, Drawing, None, 0), FAILING(SelectClipPath, Drawing, None, 0),
      replaced("SelectObject", selectObject), RELEASING(DeleteDC, Drawing, 0), RELEASING(DeleteObject, Drawing, 0)}},
    {"user32.dll",
     {FAILING(CreateWindowExA, Window, None, 0), FAILING(DialogBoxParamA, Window, None, -1),
      FAILING(GetDC, Window, Acquires, 0), FAILING(RegisterClassExA, Window, None, 0),
      FAILING(SetPropA, Window, None, 0), FAILING(SetTimer, Window, None, 0), replaced("BeginPaint", beginPaint),
      replaced("EndPaint", endPaint), RELEASING(ReleaseDC, Window, 1), FAILING(LoadStringA, Resource, None, 0)}},
    {"comctl32.dll", {FAILING(SetWindowSubclass, Window, None, 0)}},
    {"shell32.dll",
     {FAILING(SHGetPathFromIDListA, File, None, 0),
      FAILING(SHGetSpecialFolderLocation, File, None, static_cast<std::intptr_t>(E_OUTOFMEMORY))}},
    {"winmm.dll",
     {FAILING(mmioAscend, File, None, MMIOERR_CANNOTSEEK), FAILING(mmioDescend, File, None, MMIOERR_CHUNKNOTFOUND),
      FAILING(mmioOpenA, File, Acquires, 0), FAILING(mmioRead, File, None, -1), FAILING(mmioSeek, File, None, -1),
      RELEASING(mmioClose, File, 0)}}};

// Whether the target was reached.
bool run(Mode mode, const Act& act, const Call& target = {}) {
    state->target = target;
    state->mode = mode;
    state->calls = 0;
    state->reached = false;
    state->bytesLeft = 0;
    act();
    state->mode = Mode::Idle;
    return state->reached;
}

} // namespace

struct Injection::Patches {
    State books;
    void* handler = nullptr;
    std::deque<stage::ImportPatch> imports;
};

Injection::Injection(HMODULE plugin) : patches_(std::make_unique<Patches>()) {
    state = &patches_->books;
    isThorough_ = testsAreThorough();
    state->frames = isThorough_ ? kAllFrames : kNearFrames;
    state->first = reinterpret_cast<DWORD64>(plugin);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(plugin);
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS64*>(reinterpret_cast<const BYTE*>(plugin) + dos->e_lfanew);
    state->last = state->first + headers->OptionalHeader.SizeOfImage;
    for (const auto& [library, rows] : kWatched)
        for (const Row& row : rows) {
            const stage::ImportPatch& patch = patches_->imports.emplace_back(plugin, library, row.function,
                                                                             row.replacement, stage::IfMissing::Refuse);
            if (row.setOriginal != nullptr)
                row.setOriginal(patch.original());
        }
    patches_->handler = AddVectoredExceptionHandler(1, onException);
}

Injection::~Injection() {
    RemoveVectoredExceptionHandler(patches_->handler);
    patches_->imports.clear();
    state = nullptr;
}

std::vector<Call> Injection::newPlaces(const Act& act) {
    run(Mode::Discovering, act);
    return std::exchange(state->found, {});
}

bool Injection::runFailing(const Call& call, const Act& act) {
    return run(Mode::Failing, act, call);
}

bool Injection::runShort(const Call& call, const Act& act) {
    return run(Mode::Short, act, call);
}

std::vector<Call> Injection::runFailingNewPlaces(const Act& act, int step) {
    state->step = isThorough_ ? 1 : step;
    run(Mode::FailingNewPlaces, act);
    state->step = 1;
    return std::exchange(state->found, {});
}

bool Injection::hostFails(const char* command) {
    return mustFail(Kind::Host, command);
}

void Injection::handOver(HGLOBAL block) {
    acquired(Kind::GlobalMemory, block);
}

Held Injection::held() const {
    Held held{};
    for (const auto& [entry, count] : state->held)
        held[static_cast<std::size_t>(entry.first)] += count;
    return held;
}

std::vector<std::string> Injection::takeMisuses() {
    return std::exchange(state->misuses, {});
}

} // namespace faults
