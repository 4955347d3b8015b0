#include "platform/widgets/widget_drawing.hpp"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/views/layout.hpp"
#include "platform/views/painter.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr double contentInset = 16;
constexpr double cornerRadius = 20;

bool readsRightToLeft() {
  const auto languages = preferredLanguages();
  return isRightToLeft(languages.empty() ? currentLocaleIdentifier() : languages.front());
}

[[noreturn]] void failToWrite(const std::string& file, int error) {
  throw std::runtime_error("cannot write " + file + ": " + std::strerror(error));
}

/// Writes all bytes and closes; returns 0 or the error.
int writeAndClose(int descriptor, const std::string& bytes) {
  int error = 0;
  std::size_t done = 0;
  while (done < bytes.size() && error == 0) {
    const auto count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (count >= 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      error = errno;
    }
  }
  if (::close(descriptor) != 0 && error == 0) error = errno;
  return error;
}

mode_t permissionsOf(const fs::path& file) {
  struct stat existing{};
  if (::stat(file.c_str(), &existing) == 0) return existing.st_mode & 0777U;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

void replaceFile(const fs::path& file, const std::string& bytes) {
  auto temporary = (file.parent_path() / ("." + file.filename().string() + ".XXXXXX")).string();
  const int descriptor = ::mkstemp(temporary.data());
  if (descriptor < 0) failToWrite(file, errno);
  ::fchmod(descriptor, permissionsOf(file));
  int error = writeAndClose(descriptor, bytes);
  if (error == 0 && ::rename(temporary.c_str(), file.c_str()) != 0) error = errno;
  if (error == 0) return;
  ::unlink(temporary.c_str());
  failToWrite(file, error);
}

}  // namespace

Size familySize(WidgetFamily family) {
  switch (family) {
    case WidgetFamily::systemMedium:
      return {364, 170};
    case WidgetFamily::systemLarge:
      return {364, 382};
    case WidgetFamily::systemExtraLarge:
      return {756, 382};
    case WidgetFamily::systemSmall:
      break;
  }
  return {170, 170};
}

DrawList drawWidget(const WidgetView& view, WidgetFamily family, double scale) {
  Canvas canvas;
  canvas.size = familySize(family);
  canvas.inset = contentInset;
  canvas.cornerRadius = cornerRadius;
  canvas.scale = scale;
  canvas.rightToLeft = readsRightToLeft();
  canvas.background = view.containerBackground;
  canvas.environment.set(family);
  auto list = layOut(view.content, canvas, *systemTypesetter());
  list.family = familyName(family);
  return list;
}

std::optional<PictureFormat> pictureFormat(const std::string& fileName) {
  const auto ending = fs::path(fileName).extension();
  if (ending == ".png") return PictureFormat::png;
  if (ending == ".svg") return PictureFormat::svg;
  if (ending == ".pdf") return PictureFormat::pdf;
  if (ending == ".json") return PictureFormat::json;
  return std::nullopt;
}

std::string picture(const DrawList& list, PictureFormat format) {
  switch (format) {
    case PictureFormat::svg:
      return paintSvg(list);
    case PictureFormat::pdf:
      return paintPdf(list);
    case PictureFormat::json:
      return printJson(jsonForm(list)) + "\n";
    case PictureFormat::png:
      break;
  }
  return paintPng(list);
}

void writeFile(const std::string& file, const std::string& bytes) {
  std::error_code ignored;
  const auto target = fs::is_symlink(file, ignored) ? fs::weakly_canonical(file, ignored)
                                                    : fs::absolute(file, ignored);
  if (!fs::exists(target, ignored) || fs::is_regular_file(target, ignored)) {
    replaceFile(target, bytes);
    return;
  }
  const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) failToWrite(file, errno);
  if (const int error = writeAndClose(descriptor, bytes); error != 0) failToWrite(file, error);
}

}  // namespace platform
