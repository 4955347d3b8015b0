#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>

#include "platform/foundation/raii.hpp"

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
  platform::Descriptor lock_;  // held while the folder is in use
};

/// Removes the folders of this user's that a program which was killed left behind.
void removeLeftPictureFolders();

}  // namespace desktop
