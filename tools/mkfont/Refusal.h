// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_REFUSAL_H
#define VANTOR_MKFONT_REFUSAL_H

#include <stdexcept>

namespace VantorFont {

// A conversion the tool will not do, worded so the user can act on it. main prints it and
// exits non-zero; nothing has been written by then.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace VantorFont

#endif
