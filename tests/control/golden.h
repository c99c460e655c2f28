// Comparing text with files kept in tests/control/golden.
#pragma once

#include <string>

namespace qvx::test {

extern bool updateGolden;

// The file's path; where the tests run under Wine the sources are on drive Z.
std::string GoldenPath(const std::string& fileName);
std::string GoldenText(const std::string& fileName);

// Fails with the lines that differ from the file. With --update-golden the file is written instead.
void ExpectGolden(const std::string& fileName, const std::string& actual);

}  // namespace qvx::test
