// One owner template for every kind of handle: move-only, releases in its destructor.
#pragma once

#include <utility>

namespace veldran {

// `kRelease` is called with every handle that is not `kEmpty`.
template <class Handle, auto kRelease, Handle kEmpty = Handle{}>
class Owner {
public:
    Owner() = default;
    explicit Owner(Handle handle) : handle_(handle) {}
    Owner(Owner&& other) noexcept : handle_(other.release()) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~Owner() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != kEmpty; }
    // Hands the handle over; the owner is empty afterwards.
    [[nodiscard]] Handle release() { return std::exchange(handle_, kEmpty); }
    void reset(Handle handle = kEmpty) {
        const Handle old = std::exchange(handle_, handle);
        if (old != kEmpty)
            kRelease(old);
    }

private:
    Handle handle_ = kEmpty;
};

} // namespace veldran
