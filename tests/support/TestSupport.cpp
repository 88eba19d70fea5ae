#include "support/TestSupport.h"

#include <fstream>
#include <random>
#include <sstream>

namespace testsupport {

TempDir::TempDir() {
    std::random_device rd;
    path = std::filesystem::temp_directory_path() / ("tarvik-test-" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(path);
}
TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
}
void writeFile(const std::filesystem::path& p, const std::string& text) {
    std::ofstream f(p, std::ios::binary);
    f << text;
}
std::string readFile(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}
std::filesystem::path sharedData() {
#ifdef TARVIK_SHARED_DATA
    std::filesystem::path p(TARVIK_SHARED_DATA);
    if (std::filesystem::is_directory(p)) return std::filesystem::canonical(p);
#endif
    return {};
}

}  // namespace testsupport
