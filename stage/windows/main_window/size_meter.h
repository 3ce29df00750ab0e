// Works out on a thread of its own how large the file would be, while the person goes on working. A new request makes
// the one before meaningless.
#pragma once

#include "formats/file_sizes.h"
#include "windows/system/handles.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace stage {

class SizeMeter {
public:
    // `message` is posted to the window when a result can be taken.
    SizeMeter(HWND window, UINT message);
    ~SizeMeter();
    SizeMeter(const SizeMeter&) = delete;
    SizeMeter& operator=(const SizeMeter&) = delete;

    // A null animation only ends what is being done.
    void request(std::shared_ptr<const Animation> animation, OutputFormat format, const WriteOptions& options);
    // The result of the last request; nothing when it is not there (any more), or when that cannot be written.
    std::optional<FileSizes> take();

private:
    struct Request {
        std::shared_ptr<const Animation> animation;
        OutputFormat format = OutputFormat::Gif;
        WriteOptions options;
    };
    void work();
    void measure(const Request& request, unsigned number);

    HWND window_;
    UINT message_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<Request> waiting_;
    std::optional<FileSizes> result_;
    std::atomic<unsigned> number_ = 0; // of the last request
    bool isEnding_ = false;
    std::thread thread_; // begins when all others are there
};

} // namespace stage
