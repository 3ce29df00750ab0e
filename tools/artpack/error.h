// The one way in which packing artwork fails.
// Its text is a whole message for the person at the build; it never carries a stack or a code to look up.
#pragma once

#include <stdexcept>

namespace artpack {

class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace artpack
