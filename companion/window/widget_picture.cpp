#include "companion/window/widget_picture.hpp"

#include <unistd.h>

#include <filesystem>

#include "companion/beside.hpp"
#include "companion/running_host.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

namespace {

constexpr std::chrono::seconds deadline{15};

int heightOf(const std::string& family) { return family == "large" ? 382 : 170; }

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
    : content_(content), picture_(GTK_WIDGET(g_object_ref_sink(gtk_picture_new()))) {
  auto* picture = GTK_PICTURE(picture_.get());
  gtk_picture_set_can_shrink(picture, TRUE);
  gtk_widget_set_halign(picture_.get(), GTK_ALIGN_CENTER);
  connect(picture, "notify::scale-factor", [this] {
    if (!family_.empty() && gtk_widget_get_scale_factor(picture_.get()) != scale_) start();
  });
}

WidgetPicture::~WidgetPicture() {
  if (drawing_) drawing_->isCurrent = false;
}

void WidgetPicture::draw(const std::string& family) {
  family_ = family;
  gtk_widget_set_size_request(picture_.get(), -1, heightOf(family));
  start();
}

void WidgetPicture::start() {
  if (drawing_) drawing_->isCurrent = false;
  child_.reset();
  scale_ = gtk_widget_get_scale_factor(picture_.get());
  static int count = 0;
  auto drawing = std::make_shared<Drawing>();
  drawing->scale = scale_;
  drawing->file =
      std::filesystem::path(g_get_user_runtime_dir()) /
      ("velmora-window-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".png");
  drawing_ = drawing;
  const auto program = findProgram("velmora-widget");
  const std::string call = content_ == Content::sample ? "placeholder" : "snapshot";
  child_ = std::make_unique<Child>(
      std::vector<std::string>{program, call, "--family", family_, "--scale",
                               std::to_string(scale_), "--output", drawing->file},
      deadline, [this, drawing](bool well) {
        if (well) finish(drawing);
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
        gtk_picture_set_paintable(GTK_PICTURE(picture_.get()), paintable.get());
      });
}

}  // namespace companion::window
