// The folder in which the tests find samples and expected pictures.
#pragma once

namespace qvx::test {

// The full path of the project's folder, with slashes but none at its end.
extern const char* const sourceFolder;

}  // namespace qvx::test
