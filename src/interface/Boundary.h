// SPDX-License-Identifier: MIT
#ifndef VANTOR_BOUNDARY_H
#define VANTOR_BOUNDARY_H

#include <exception>
#include <iostream>

namespace Vantor {

// Runs the body of an exported call so that no exception ever reaches a C caller:
// anything thrown is reported in one line on the error stream, named after the call,
// and the call answers with its failure code.
template <typename Result, typename Body>
Result Guarded(const char* call, Result failure, Body body) noexcept {
    try {
        return body();
    } catch (const std::exception& error) {
        try {
            std::cerr << call << ": " << error.what() << std::endl;
        } catch (...) {
        }
    } catch (...) {
        try {
            std::cerr << call << ": unexpected error" << std::endl;
        } catch (...) {
        }
    }
    return failure;
}

}  // namespace Vantor

#endif
