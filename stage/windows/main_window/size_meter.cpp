// The worker; see the header.
#include "windows/main_window/size_meter.h"

namespace stage {

SizeMeter::SizeMeter(HWND window, UINT message) : window_(window), message_(message), thread_([this] { work(); }) {}

SizeMeter::~SizeMeter() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        ++number_;
    }
    changed_.notify_one();
    thread_.join();
}

void SizeMeter::request(std::shared_ptr<const Animation> animation, OutputFormat format, const WriteOptions& options) {
    {
        const std::lock_guard lock(mutex_);
        ++number_;
        result_.reset();
        waiting_.reset();
        if (animation)
            waiting_ = Request{std::move(animation), format, options};
    }
    changed_.notify_one();
}

std::optional<FileSizes> SizeMeter::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(result_, std::nullopt);
}

void SizeMeter::work() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL); // playing comes first
    for (;;) {
        Request request;
        unsigned number = 0;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return isEnding_ || waiting_; });
            if (isEnding_)
                return;
            request = std::move(*waiting_);
            waiting_.reset();
            number = number_;
        }
        measure(request, number);
    }
}

void SizeMeter::measure(const Request& request, unsigned number) {
    std::optional<FileSizes> sizes;
    try {
        WriteOptions options = request.options;
        options.threads = 1; // this one, which gives way to all others
        sizes = measuredSizes(*request.animation, request.format, options,
                              [&](std::size_t, std::size_t) { return number_ == number; });
    } catch (const std::exception&) {
        return; // saving will say why
    }
    const std::lock_guard lock(mutex_);
    if (!sizes || number_ != number)
        return;
    result_ = std::move(sizes);
    PostMessageW(window_, message_, 0, 0);
}

} // namespace stage
