// Outlines of what is painted.
#include "gui_mask.h"

#include <algorithm>

cairo_t *BeginMask(int width, int height) {
  cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_A8, width, height);
  cairo_t *drawing = cairo_create(surface);
  cairo_surface_destroy(surface);
  cairo_set_antialias(drawing, CAIRO_ANTIALIAS_BEST);
  return drawing;
}

Mask EndMask(cairo_t *drawing) {
  cairo_surface_t *surface = cairo_get_target(drawing);
  cairo_surface_flush(surface);
  Mask mask{cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface), {}};
  mask.cover.resize(PixelIndex(mask.width, 0, mask.height));
  const unsigned char *data = cairo_image_surface_get_data(surface);
  const size_t stride = static_cast<size_t>(cairo_image_surface_get_stride(surface));
  const size_t width = static_cast<size_t>(mask.width);
  for (size_t y = 0; y < static_cast<size_t>(mask.height); y++) {
    for (size_t x = 0; x < width; x++) mask.cover[y * width + x] = static_cast<float>(data[y * stride + x]) / 255.0f;
  }
  cairo_destroy(drawing);
  return mask;
}

void RoundPath(cairo_t *drawing, double x, double y, double width, double height, double radius) {
  const double quarter = 1.5707963267948966;
  const double right = x + width - radius;
  const double bottom = y + height - radius;
  const Spot turns[4] = {{right, y + radius}, {right, bottom}, {x + radius, bottom}, {x + radius, y + radius}};
  cairo_new_sub_path(drawing);
  for (int i = 0; i < 4; i++) cairo_arc(drawing, turns[i].x, turns[i].y, radius, (i - 1) * quarter, i * quarter);
  cairo_close_path(drawing);
}

void PolyPath(cairo_t *drawing, std::initializer_list<Spot> spots) {
  cairo_new_sub_path(drawing);
  for (const Spot &spot : spots) cairo_line_to(drawing, spot.x, spot.y);
  cairo_close_path(drawing);
}

void ChamferPath(cairo_t *drawing, double x, double y, double width, double height, double cut) {
  const double right = x + width;
  const double bottom = y + height;
  PolyPath(drawing, {{x + cut, y},
                     {right - cut, y},
                     {right, y + cut},
                     {right, bottom - cut},
                     {right - cut, bottom},
                     {x + cut, bottom},
                     {x, bottom - cut},
                     {x, y + cut}});
}

void CirclePath(cairo_t *drawing, double x, double y, double radius) {
  cairo_new_sub_path(drawing);
  cairo_arc(drawing, x, y, radius, 0.0, 6.283185307179586);
  cairo_close_path(drawing);
}

Mask RoundMask(const Canvas &canvas, double x, double y, double width, double height, double radius) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  RoundPath(drawing, x, y, width, height, radius);
  cairo_fill(drawing);
  return EndMask(drawing);
}

Mask ChamferMask(const Canvas &canvas, double x, double y, double width, double height, double cut) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  ChamferPath(drawing, x, y, width, height, cut);
  cairo_fill(drawing);
  return EndMask(drawing);
}

Mask PolyMask(const Canvas &canvas, std::initializer_list<Spot> spots) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  PolyPath(drawing, spots);
  cairo_fill(drawing);
  return EndMask(drawing);
}

Mask CircleMask(const Canvas &canvas, double x, double y, double radius) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  CirclePath(drawing, x, y, radius);
  cairo_fill(drawing);
  return EndMask(drawing);
}

Mask LineMask(const Canvas &canvas, std::initializer_list<Spot> spots, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  cairo_set_line_cap(drawing, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(drawing, CAIRO_LINE_JOIN_ROUND);
  for (const Spot &spot : spots) cairo_line_to(drawing, spot.x, spot.y);
  cairo_stroke(drawing);
  return EndMask(drawing);
}

Mask LetterMask(const Canvas &canvas, const char *text, double x, double y, double height, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  LetterPath(drawing, text, x, y, height);
  cairo_stroke(drawing);
  return EndMask(drawing);
}

// One pass of a running mean along lines of `length` cells that lie `stride` apart.
static void BlurLine(const float *from, float *to, int length, size_t stride, int radius) {
  const auto value = [&](int i) { return from[static_cast<size_t>(std::clamp(i, 0, length - 1)) * stride]; };
  double sum = 0.0;
  for (int i = -radius; i <= radius; i++) sum += static_cast<double>(value(i));
  for (int i = 0; i < length; i++) {
    to[static_cast<size_t>(i) * stride] = static_cast<float>(sum / (2 * radius + 1));
    sum += static_cast<double>(value(i + radius + 1)) - static_cast<double>(value(i - radius));
  }
}

Mask Blurred(const Mask &mask, int radius) {
  if (radius < 1) return mask;
  Mask now = mask;
  Mask next = mask;
  const size_t width = static_cast<size_t>(mask.width);
  for (int pass = 0; pass < 2; pass++) {
    for (size_t y = 0; y < static_cast<size_t>(mask.height); y++) {
      BlurLine(&now.cover[y * width], &next.cover[y * width], mask.width, 1, radius);
    }
    for (size_t x = 0; x < width; x++) BlurLine(&next.cover[x], &now.cover[x], mask.height, width, radius);
  }
  return now;
}

Mask Both(const Mask &a, const Mask &b) {
  Mask out = a;
  for (size_t i = 0; i < out.cover.size(); i++) out.cover[i] *= b.cover[i];
  return out;
}

Mask Without(const Mask &a, const Mask &b) {
  Mask out = a;
  for (size_t i = 0; i < out.cover.size(); i++) out.cover[i] *= 1.0f - b.cover[i];
  return out;
}

Mask Either(const Mask &a, const Mask &b) {
  Mask out = a;
  for (size_t i = 0; i < out.cover.size(); i++) out.cover[i] = std::max(out.cover[i], b.cover[i]);
  return out;
}
