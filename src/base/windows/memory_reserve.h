// Memory kept aside for the moment when there is no more: even an exception takes some, and a runtime library that gets
// none for it ends the whole process, the host with it.
#pragma once

namespace veldran {

// Throws std::bad_alloc: for all who run out of memory, handles or windows. The reserve is given up before.
[[noreturn]] void throwOutOfMemory();

// Kept for the object's life; one at a time. Operator new gives it up, too, before it throws.
class MemoryReserve {
public:
    MemoryReserve();
    MemoryReserve(const MemoryReserve&) = delete;
    MemoryReserve& operator=(const MemoryReserve&) = delete;
    ~MemoryReserve();

    // Asks for what was given up, once the exception has been dealt with.
    static void refill();
};

} // namespace veldran
