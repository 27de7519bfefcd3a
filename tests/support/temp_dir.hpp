#pragma once
// A fresh folder under the build tree for one test, removed when the test ends.

#include <filesystem>
#include <string>

namespace qr::test {

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

  private:
    std::filesystem::path m_path;
};

/// The whole content of `file`; empty when it cannot be read.
std::string fileBytes(const std::filesystem::path& file);

} // namespace qr::test
