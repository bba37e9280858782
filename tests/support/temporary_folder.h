#pragma once
#include <string>
#include <string_view>

/// A new folder on a drive, for one test: "C:\...\" on both builds (natively below a drive root of its own),
/// removed with all it holds.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder, ending in `\`.
    const std::string& folder() const { return m_folder; }
    std::string path(std::string_view name) const { return m_folder + std::string(name); }
    /// Writes a file of the folder (and the folders above it) and returns its path.
    std::string write(std::string_view name, std::string_view content) const;
    /// Content of a file of the folder; fails the test when it cannot be read.
    std::string read(std::string_view name) const;

  private:
    std::string m_folder;
};
