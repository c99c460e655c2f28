// Comparing text with files kept in tests/control/golden.
#pragma once

#include <string>

namespace qvx::test {

extern bool updateGolden;

// Fails with the lines that differ from the file. With --update-golden the file is written instead.
void ExpectGolden(const std::string& fileName, const std::string& actual);

}  // namespace qvx::test
