#pragma once
#include <filesystem>
#include <string>

namespace testsupport {
// A fresh folder under the system temp folder, removed by the destructor.
struct TempDir {
    TempDir();
    ~TempDir();
    std::filesystem::path path;
    std::filesystem::path file(const std::string& name) const { return path / name; }
};
void writeFile(const std::filesystem::path& p, const std::string& text);
std::string readFile(const std::filesystem::path& p);
// ../shared/data beside the checkout, or empty when it is absent.
std::filesystem::path sharedData();
}  // namespace testsupport

// Skips the test with a clear message when the shared sample data is absent.
#define TARVIK_REQUIRE_SHARED_DATA()                                                   \
    do {                                                                               \
        if (testsupport::sharedData().empty())                                         \
            GTEST_SKIP() << "shared sample data folder (../shared/data) is absent";    \
    } while (0)
