// A message loop that ends with the thread; see the header.
#include "windows/main_window/long_work.h"

#include <exception>
#include <thread>

namespace stage {
namespace {

constexpr DWORD kShowEvery = 100; // ms

class Event {
public:
    Event() : handle_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    HANDLE get() const { return handle_.get(); }

private:
    Process handle_; // closed like one
};

} // namespace

void runWork(WorkState& state, const std::function<void()>& work, const std::function<void(MSG& message)>& dispatch,
             const std::function<void()>& show) {
    const Event finished;
    std::exception_ptr failure;
    std::thread thread([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        SetEvent(finished.get());
    });
    const HANDLE handles[] = {finished.get()};
    ULONGLONG shown = 0;
    while (MsgWaitForMultipleObjects(1, handles, FALSE, kShowEvery, QS_ALLINPUT) != WAIT_OBJECT_0) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) { // for the outer loop
                state.isStopped = true;
                PostQuitMessage(static_cast<int>(message.wParam));
                thread.join();
                return;
            }
            dispatch(message);
        }
        if (GetTickCount64() - shown < kShowEvery)
            continue;
        shown = GetTickCount64();
        show();
    }
    thread.join();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace stage
