#include "companion/window/widget_picture.hpp"

#include <unistd.h>

#include <filesystem>

#include "companion/main_loop_tasks.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

constexpr std::chrono::seconds deadline{15};

/// The texture at its size in points, so that it is laid out alike at every scale.
GdkPaintable* inPoints(GdkTexture* texture, int scale) {
  const auto width = static_cast<float>(gdk_texture_get_width(texture)) / static_cast<float>(scale);
  const auto height =
      static_cast<float>(gdk_texture_get_height(texture)) / static_cast<float>(scale);
  const graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, width, height);
  auto* snapshot = gtk_snapshot_new();
  gtk_snapshot_append_texture(snapshot, texture, &bounds);
  return gtk_snapshot_free_to_paintable(snapshot, &bounds.size);
}

}  // namespace

/// One call of the widget program; the file goes with it.
struct WidgetPicture::Drawing {
  std::filesystem::path file;
  int scale = 1;
  bool isCurrent = true;
  Reference<GdkTexture> texture;

  ~Drawing() {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
  }
};

WidgetPicture::WidgetPicture(Content content)
    : content_(content),
      picture_(gtk_picture_new()),
      frame_(GTK_WIDGET(g_object_ref_sink(adw_clamp_new()))) {
  auto* picture = GTK_PICTURE(picture_);
  adw_clamp_set_child(ADW_CLAMP(frame_.get()), picture_);
  gtk_picture_set_content_fit(picture, GTK_CONTENT_FIT_SCALE_DOWN);
  connect(picture, "notify::scale-factor", [this] {
    if (family_ && gtk_widget_get_scale_factor(picture_) != scale_) start();
  });
}

WidgetPicture::~WidgetPicture() {
  if (drawing_) drawing_->isCurrent = false;
}

void WidgetPicture::draw(platform::WidgetFamily family) {
  family_ = family;
  const auto size = platform::familySize(family);
  adw_clamp_set_maximum_size(ADW_CLAMP(frame_.get()), static_cast<int>(size.width));
  adw_clamp_set_tightening_threshold(ADW_CLAMP(frame_.get()), static_cast<int>(size.width));
  gtk_widget_set_size_request(picture_, -1, static_cast<int>(size.height));
  start();
}

void WidgetPicture::start() {
  if (drawing_) drawing_->isCurrent = false;
  process_.end();
  scale_ = gtk_widget_get_scale_factor(picture_);
  static int count = 0;
  auto drawing = std::make_shared<Drawing>();
  drawing->scale = scale_;
  drawing->file =
      std::filesystem::path(g_get_user_runtime_dir()) /
      ("velmora-window-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".png");
  drawing_ = drawing;
  const auto program = platform::findProgram("velmora-widget");
  const std::string call = content_ == Content::sample ? "placeholder" : "snapshot";
  process_.start({program, call, "--family", platform::familyShortName(*family_), "--scale",
                  std::to_string(scale_), "--output", drawing->file},
                 deadline, [this, drawing](const platform::ProcessEnd& end) {
                   if (end.failure.empty()) finish(drawing);
                 });
}

void WidgetPicture::finish(const std::shared_ptr<Drawing>& drawing) {
  runBeside(
      [drawing] {
        drawing->texture.reset(gdk_texture_new_from_filename(drawing->file.c_str(), nullptr));
      },
      [this, drawing] {
        if (!drawing->isCurrent || !drawing->texture) return;
        const Reference<GdkPaintable> paintable(inPoints(drawing->texture.get(), drawing->scale));
        gtk_picture_set_paintable(GTK_PICTURE(picture_), paintable.get());
      });
}

}  // namespace companion::window
