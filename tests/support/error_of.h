// Run-time errors as tests expect them.
#pragma once

#include "common/run_time_error.h"

namespace qvx::test {

struct Raised {
    int number = 0;
    Text words;
};

// The error that a call ends with, number 0 without one.
template <typename Call>
Raised RaisedBy(const Call& call) {
    try {
        call();
    } catch (const RunTimeError& error) {
        return {error.Number(), Text(error.Description())};
    }
    return {};
}

template <typename Call>
int ErrorOf(const Call& call) {
    return RaisedBy(call).number;
}

}  // namespace qvx::test
