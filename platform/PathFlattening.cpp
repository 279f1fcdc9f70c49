#include "PathFlattening.h"

#include <cairo.h>

namespace ptgdi {

namespace {

class FigureBuilder {
 public:
  void MoveTo(double x, double y) {
    Finish();
    m_current.points.push_back({x, y});
  }
  void LineTo(double x, double y) {
    if (m_current.points.empty()) m_current.points.push_back(m_start);
    m_current.points.push_back({x, y});
  }
  void Close() {
    if (m_current.points.empty()) return;
    PathPoint start = m_current.points.front();
    m_current.closed = true;
    Finish();
    m_start = start;  // a line after a close starts at the closed figure's start
  }
  std::vector<Figure> Take() {
    Finish();
    return std::move(m_figures);
  }

 private:
  void Finish() {
    if (!m_current.points.empty()) m_start = m_current.points.back();
    if (m_current.points.size() >= 2) m_figures.push_back(std::move(m_current));
    m_current = Figure();
  }
  std::vector<Figure> m_figures;
  Figure m_current;
  PathPoint m_start = {0.0, 0.0};
};

bool HasCurves(const std::vector<CDC::PathOp>& ops) {
  for (const CDC::PathOp& op : ops)
    if (op.type == PT_BEZIERTO) return true;
  return false;
}

std::vector<Figure> FlattenWithCairo(const std::vector<CDC::PathOp>& ops) {
  FigureBuilder builder;
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  cairo_t* cr = cairo_create(surface);
  AppendCairoPath(cr, ops, 0.0, 0.0);
  cairo_path_t* path = cairo_copy_path_flat(cr);
  if (path->status == CAIRO_STATUS_SUCCESS) {
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
      const cairo_path_data_t& d = path->data[i];
      switch (d.header.type) {
        case CAIRO_PATH_MOVE_TO: builder.MoveTo(path->data[i + 1].point.x, path->data[i + 1].point.y); break;
        case CAIRO_PATH_LINE_TO: builder.LineTo(path->data[i + 1].point.x, path->data[i + 1].point.y); break;
        case CAIRO_PATH_CLOSE_PATH: builder.Close(); break;
        case CAIRO_PATH_CURVE_TO: break;  // a flat path has none
      }
    }
  }
  cairo_path_destroy(path);
  cairo_destroy(cr);
  cairo_surface_destroy(surface);
  return builder.Take();
}

}  // namespace

void AppendCairoPath(cairo_t* cr, const std::vector<CDC::PathOp>& ops, double dx, double dy) {
  for (std::size_t i = 0; i < ops.size(); i++) {
    const CDC::PathOp& op = ops[i];
    switch (op.type) {
      case PT_MOVETO: cairo_move_to(cr, op.x + dx, op.y + dy); break;
      case PT_LINETO: cairo_line_to(cr, op.x + dx, op.y + dy); break;
      case PT_CLOSEFIGURE: cairo_close_path(cr); break;
      case PT_BEZIERTO:
        if (i + 2 < ops.size()) {
          cairo_curve_to(cr, op.x + dx, op.y + dy, ops[i + 1].x + dx, ops[i + 1].y + dy,
                         ops[i + 2].x + dx, ops[i + 2].y + dy);
        }
        i += 2;
        break;
      default: break;
    }
  }
}

std::vector<Figure> FlattenPath(const std::vector<CDC::PathOp>& ops) {
  if (HasCurves(ops)) return FlattenWithCairo(ops);
  FigureBuilder builder;
  for (const CDC::PathOp& op : ops) {
    switch (op.type) {
      case PT_MOVETO: builder.MoveTo(op.x, op.y); break;
      case PT_LINETO: builder.LineTo(op.x, op.y); break;
      case PT_CLOSEFIGURE: builder.Close(); break;
      default: break;
    }
  }
  return builder.Take();
}

}  // namespace ptgdi
