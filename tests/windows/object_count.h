// Counts the drawing objects and windows of this process, for tests that nothing is left over.
// Never asserts anything itself.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>

#include <windows.h>

namespace object_count {

namespace detail {

// One entry of the table of drawing objects that the system shares with every process.
struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; // 0: free
    std::uint8_t flags;
    std::uint64_t userPointer;
};
static_assert(sizeof(GdiEntry) == 24);

inline const GdiEntry* gdiTable() {
    constexpr std::size_t kTable = 0xF8; // in the process block of 64-bit programs
    using CurrentBlock = const std::uint8_t*(NTAPI*)();
    const auto currentBlock = reinterpret_cast<CurrentBlock>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb")));
    return *reinterpret_cast<const GdiEntry* const*>(currentBlock() + kTable);
}

inline BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

} // namespace detail

// Pens, brushes, fonts, bitmaps, device contexts. Wine's GetGuiResources always answers 0; its table has one entry for
// each object of the process.
inline int drawingObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); count != 0)
        return static_cast<int>(count);
    constexpr int kEntries = 0x4000; // of Wine's table
    const detail::GdiEntry* table = detail::gdiTable();
    int count = 0;
    for (int i = 0; table != nullptr && i < kEntries; ++i)
        count += table[i].type != 0;
    return count;
}

// Windows, menus, hooks and more where the system counts them; else this thread's top-level windows.
inline int userObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS); count != 0)
        return static_cast<int>(count);
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), detail::countWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Bytes in use on the heap from which global memory comes.
inline std::size_t heapBytes() {
    const HANDLE heap = GetProcessHeap();
    PROCESS_HEAP_ENTRY entry{};
    std::size_t bytes = 0;
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            bytes += entry.cbData;
    HeapUnlock(heap);
    return bytes;
}

struct Growth {
    int drawing = INT_MAX;
    int user = INT_MAX;
    std::ptrdiff_t heap = PTRDIFF_MAX;
};

// Does `act` `times` times in each of some batches and returns the least that the counts grew by in any of them. What
// the system loads once, such as the pictures of a theme, shows in one batch; what is lost shows in all of them.
template <class Act>
Growth leastGrowth(int batches, int times, Act act) {
    Growth least;
    for (int batch = 0; batch < batches; ++batch) {
        const int drawing = drawingObjects();
        const int user = userObjects();
        const std::size_t heap = heapBytes();
        for (int i = 0; i < times; ++i)
            act();
        least.drawing = std::min(least.drawing, drawingObjects() - drawing);
        least.user = std::min(least.user, userObjects() - user);
        least.heap = std::min(least.heap, static_cast<std::ptrdiff_t>(heapBytes() - heap));
    }
    return least;
}

// Whether drawing objects or windows are left over each time.
template <class Act>
bool leavesObjects(int batches, int times, Act act) {
    const Growth growth = leastGrowth(batches, times, act);
    return growth.drawing > 0 || growth.user > 0;
}

} // namespace object_count
