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
// places in what they share, four times as many in all.
constexpr int kNearFrames = 3;
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

template <Name kName, Kind kKind, class Signature>
struct Releasing;

template <Name kName, Kind kKind, class Result, class Handle>
struct Releasing<kName, kKind, Result(Handle)> {
    static inline Result (*original)(Handle) = nullptr;
    static Result call(Handle handle) {
        released(kKind, handle);
        return original(handle);
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

int WINAPI releaseDc(HWND window, HDC dc) {
    released(Kind::Window, dc);
    return ReleaseDC(window, dc);
}

MMRESULT WINAPI closeMedia(HMMIO file, UINT flags) {
    released(Kind::File, file);
    return mmioClose(file, flags);
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
    const char* library;
    const char* function;
    void* replacement;
    void (*setOriginal)(void*) = nullptr;
};

template <class Watched>
Row row(const char* library, const char* function) {
    return {library, function, reinterpret_cast<void*>(Watched::call),
            [](void* original) { Watched::original = reinterpret_cast<decltype(Watched::original)>(original); }};
}

#define FAILING(library, function, kind, role, failure)                                                                \
    row<Failing<#function, Kind::kind, Role::role, failure, decltype(function)>>(library, #function)
#define RELEASING(library, function, kind) row<Releasing<#function, Kind::kind, decltype(function)>>(library, #function)
#define REPLACED(library, function, replacement)                                                                       \
    Row {                                                                                                              \
        library, #function, reinterpret_cast<void*>(replacement)                                                       \
    }

const Row kRows[] = {
    REPLACED("msvcrt.dll", abort, giveUp),
    REPLACED("msvcrt.dll", malloc, allocate),
    REPLACED("msvcrt.dll", calloc, allocateZeroed),
    FAILING("msvcrt.dll", _aligned_malloc, Memory, Acquires, 0),
    row<Reallocating>("msvcrt.dll", "realloc"),
    REPLACED("msvcrt.dll", free, release),
    RELEASING("msvcrt.dll", _aligned_free, Memory),
    FAILING("kernel32.dll", GlobalAlloc, GlobalMemory, Acquires, 0),
    REPLACED("kernel32.dll", GlobalReAlloc, reallocateGlobal),
    REPLACED("kernel32.dll", GlobalFree, freeGlobal),
    REPLACED("kernel32.dll", GlobalLock, lockGlobal),
    RELEASING("kernel32.dll", GlobalUnlock, Lock),
    FAILING("gdi32.dll", CreateCompatibleBitmap, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateCompatibleDC, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateDIBSection, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateFontA, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateFontIndirectA, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreatePen, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateRectRgnIndirect, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateRoundRectRgn, Drawing, Acquires, 0),
    FAILING("gdi32.dll", CreateSolidBrush, Drawing, Acquires, 0),
    FAILING("gdi32.dll", BeginPath, Drawing, None, 0),
    FAILING("gdi32.dll", SaveDC, Drawing, None, 0),
    FAILING("gdi32.dll", SelectClipPath, Drawing, None, 0),
    REPLACED("gdi32.dll", SelectObject, selectObject),
    RELEASING("gdi32.dll", DeleteDC, Drawing),
    RELEASING("gdi32.dll", DeleteObject, Drawing),
    FAILING("user32.dll", CreateWindowExA, Window, None, 0),
    FAILING("user32.dll", DialogBoxParamA, Window, None, -1),
    FAILING("user32.dll", GetDC, Window, Acquires, 0),
    FAILING("user32.dll", RegisterClassExA, Window, None, 0),
    FAILING("user32.dll", SetPropA, Window, None, 0),
    FAILING("user32.dll", SetTimer, Window, None, 0),
    FAILING("comctl32.dll", SetWindowSubclass, Window, None, 0),
    REPLACED("user32.dll", BeginPaint, beginPaint),
    REPLACED("user32.dll", EndPaint, endPaint),
    REPLACED("user32.dll", ReleaseDC, releaseDc),
    FAILING("kernel32.dll", CreateActCtxA, Resource, Acquires, -1),
    FAILING("kernel32.dll", ActivateActCtx, Resource, None, 0),
    FAILING("kernel32.dll", FindResourceA, Resource, None, 0),
    FAILING("kernel32.dll", LoadResource, Resource, None, 0),
    FAILING("kernel32.dll", LockResource, Resource, None, 0),
    FAILING("user32.dll", LoadStringA, Resource, None, 0),
    RELEASING("kernel32.dll", ReleaseActCtx, Resource),
    FAILING("kernel32.dll", CreateDirectoryA, File, None, 0),
    FAILING("kernel32.dll", CreateFileA, File, Acquires, -1),
    FAILING("kernel32.dll", FlushFileBuffers, File, None, 0),
    FAILING("kernel32.dll", GetFileSizeEx, File, None, 0),
    FAILING("kernel32.dll", MoveFileExA, File, None, 0),
    FAILING("kernel32.dll", ReadFile, File, None, 0),
    FAILING("kernel32.dll", WriteFile, File, None, 0),
    FAILING("shell32.dll", SHGetPathFromIDListA, File, None, 0),
    FAILING("shell32.dll", SHGetSpecialFolderLocation, File, None, static_cast<std::intptr_t>(E_OUTOFMEMORY)),
    FAILING("winmm.dll", mmioAscend, File, None, MMIOERR_CANNOTSEEK),
    FAILING("winmm.dll", mmioDescend, File, None, MMIOERR_CHUNKNOTFOUND),
    FAILING("winmm.dll", mmioOpenA, File, Acquires, 0),
    FAILING("winmm.dll", mmioRead, File, None, -1),
    FAILING("winmm.dll", mmioSeek, File, None, -1),
    RELEASING("kernel32.dll", CloseHandle, File),
    REPLACED("winmm.dll", mmioClose, closeMedia),
};

void run(Mode mode, const Act& act) {
    state->mode = mode;
    state->calls = 0;
    state->reached = false;
    state->bytesLeft = 0;
    act();
    state->mode = Mode::Idle;
}

} // namespace

const char* nameOf(Kind kind) {
    constexpr const char* kNames[] = {"memory",  "global memory", "locks", "drawing objects",
                                      "windows", "resources",     "files", "host commands"};
    return kNames[static_cast<std::size_t>(kind)];
}

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
    for (const Row& row : kRows) {
        const stage::ImportPatch& patch = patches_->imports.emplace_back(plugin, row.library, row.function,
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
    state->target = call;
    run(Mode::Failing, act);
    return state->reached;
}

bool Injection::runShort(const Call& call, const Act& act) {
    state->target = call;
    run(Mode::Short, act);
    return state->reached;
}

std::vector<Call> Injection::runFailingNewPlaces(const Act& act, int step) {
    state->target = {};
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
