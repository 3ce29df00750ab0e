// COM on this thread, for the shell and for decoding images, as long as this lives.
#pragma once

#include <objbase.h>

namespace stage {

class ComApartment {
public:
    ComApartment() : ready_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComApartment() {
        if (ready_)
            CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool ready_;
};

} // namespace stage
