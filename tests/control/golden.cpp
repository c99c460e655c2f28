#include "tests/control/golden.h"
#include "tests/support/source_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace qvx::test {

bool updateGolden = false;

namespace {

std::string WithoutReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

}  // namespace

std::string GoldenPath(const std::string& fileName) {
    const std::string path = std::string(sourceFolder) + "/tests/control/golden/";
    const bool hasDrive = path.size() > 1 && path[1] == ':';
    return (hasDrive ? path : "Z:" + path) + fileName;
}

std::string GoldenText(const std::string& fileName) {
    std::ifstream file(GoldenPath(fileName), std::ios::binary);
    EXPECT_TRUE(file) << GoldenPath(fileName) << " is missing";
    std::ostringstream all;
    all << file.rdbuf();
    return WithoutReturns(all.str());
}

void ExpectGolden(const std::string& fileName, const std::string& actual) {
    if (updateGolden) {
        std::ofstream(GoldenPath(fileName), std::ios::binary) << actual;
        return;
    }
    EXPECT_EQ(GoldenText(fileName), WithoutReturns(actual)) << fileName;
}

}  // namespace qvx::test
