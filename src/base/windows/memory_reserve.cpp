// GCC's library locks a mutex for its own emergency store that asks for memory when it is first locked, and throws when
// it gets none, without end. With the reserve given up that store is never needed.
#include "base/windows/memory_reserve.h"

#include <cstdlib>
#include <exception>
#include <new>
#include <utility>

namespace veldran {
namespace {

// An exception and what the library makes for a thread's first one take less than 2000 bytes.
constexpr std::size_t kReserve = 32768;

void* reserve = nullptr;
bool kept = false;

} // namespace

void throwOutOfMemory() {
    std::free(std::exchange(reserve, nullptr));
    throw std::bad_alloc();
}

MemoryReserve::MemoryReserve() {
    kept = true;
    refill();
    std::set_new_handler(throwOutOfMemory);
    static_cast<void>(std::uncaught_exceptions()); // makes what is made once
}

MemoryReserve::~MemoryReserve() {
    kept = false;
    std::set_new_handler(nullptr);
    std::free(std::exchange(reserve, nullptr));
}

void MemoryReserve::refill() {
    if (kept && reserve == nullptr)
        reserve = std::malloc(kReserve);
}

} // namespace veldran
