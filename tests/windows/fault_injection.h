// Faults in the built plugin, made from outside: its imports of what can fail for want of memory, drawing objects,
// windows, resources or files lead through here. One call of a run can be made to fail, and what is acquired and given
// back is counted. The plugin's code knows nothing of it. One injection at a time, on one thread.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

namespace faults {

enum class Kind : int { Memory, GlobalMemory, Lock, Drawing, Window, Resource, File, Host };
inline constexpr std::size_t kKinds = 8;

// A call that can be made to fail: the `number`-th of a run among all watched ones, or with 0 the function's first.
struct Call {
    Kind kind;
    std::string function;
    std::uint64_t number;
};

// How many of each kind the plugin has acquired and not given back.
using Held = std::array<int, kKinds>;

using Act = std::function<void()>;

class Injection {
public:
    // Throws std::runtime_error when the plugin does not import what is watched.
    explicit Injection(HMODULE plugin);
    Injection(const Injection&) = delete;
    Injection& operator=(const Injection&) = delete;
    ~Injection();

    // Runs `act` untouched and returns, in their order, the first calls from places that no run before has shown. A
    // place is the function and the nearest frames of the plugin that lead to it; with VELDRAN_TESTS=all in the
    // environment, the whole way through the plugin.
    std::vector<Call> newPlaces(const Act& act);

    // Runs `act` with one call failing; false when the run makes no such call.
    bool runFailing(const Call& call, const Act& act);

    // The same with nothing left from there on: no drawing objects, no global memory, and as much other memory as the
    // plugin gives back itself.
    bool runShort(const Call& call, const Act& act);

    // Runs `act` with the first call from every place failing that no run before has shown, and returns those calls. Of
    // memory and of locks only one each: the exception that follows takes memory, and a lock may be tried again. Of
    // each function's new places only every `step`-th fails, unless all are wanted.
    std::vector<Call> runFailingNewPlaces(const Act& act, int step = 1);

    // For the host that takes the plugin's commands: whether it is to answer 0 this time.
    bool hostFails(const char* command);

    // A block that the host has handed to the plugin, which has to free it.
    void handOver(HGLOBAL block);

    Held held() const;
    // What nobody should do, such as freeing a block that is locked; empties the list.
    std::vector<std::string> takeMisuses();

private:
    struct Patches;
    std::unique_ptr<Patches> patches_;
    bool isThorough_ = false;
};

} // namespace faults
