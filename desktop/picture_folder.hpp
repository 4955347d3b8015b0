#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace desktop {

/// A folder of our own, for the user alone, that is removed with all it holds.
class PictureFolder {
 public:
  /// Makes one where that many bytes have room: in the user's runtime directory, else in the
  /// system's folder for temporary files. Throws std::runtime_error, which names both and says why.
  explicit PictureFolder(std::uintmax_t bytes);
  ~PictureFolder();
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace desktop
