#pragma once
/// \file
/// A fresh folder of its own for each test, removed at the end.

#include <filesystem>
#include <string>

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string File(const std::string& name) const { return (path_ / name).string(); }
    void Write(const std::string& name, const std::string& content) const;
    std::string Read(const std::string& name) const;  ///< "" for a file that is not there
    bool Has(const std::string& name) const;

  private:
    std::filesystem::path path_;
};

/// Whole content of a file; "" when it is not there.
std::string ReadWholeFile(const std::filesystem::path& file);

/// Makes a folder the working directory for the length of a scope.
class WorkingIn {
  public:
    explicit WorkingIn(const std::filesystem::path& folder);
    ~WorkingIn();
    WorkingIn(const WorkingIn&) = delete;
    WorkingIn& operator=(const WorkingIn&) = delete;

  private:
    std::filesystem::path before_;
};
