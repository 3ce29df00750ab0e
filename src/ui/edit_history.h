// Undo for an editor: a person's gestures (a drag, a key held down, the filling of a field) are single steps.
#pragma once

#include <optional>
#include <utility>
#include <vector>

namespace veldran {

template <class State>
class EditHistory {
public:
    // A gesture may follow; its first change makes `current` a step to come back to.
    void begin(const State& current) { before_ = current; }

    // To be called with every change; further changes of the same gesture add no step.
    void changed() {
        if (before_)
            steps_.push_back(*std::exchange(before_, std::nullopt));
    }

    bool canUndo() const { return !steps_.empty(); }

    // The state before the last step. Asked only when canUndo().
    State undo() {
        State state = std::move(steps_.back());
        steps_.pop_back();
        before_ = state;
        return state;
    }

private:
    std::optional<State> before_;
    std::vector<State> steps_;
};

} // namespace veldran
