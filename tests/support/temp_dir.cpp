#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace qr::test {

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? std::string(info->test_suite_name()) + "." + info->name() : "t";
    for (char& c : name)
        if (c == '/') c = '_';
    m_path = std::filesystem::path(QR_BINARY_DIR) / "test-tmp" /
             (name + "-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
}

std::string fileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

} // namespace qr::test
