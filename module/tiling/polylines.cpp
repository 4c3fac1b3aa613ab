// Polylines in double precision: each stretch inside the guard rectangle is one inner call, with
// the points where the line enters and leaves.
#include "module/tiling/polylines.h"

#include <algorithm>
#include <memory>
#include <new>

#include "host/clip.h"
#include "module/tiling/guarded_call.h"

namespace zbuffer::tiling {
namespace {

// Values of colouring. `in(n)` and `out(n)` are what the framework gets for the segment from point
// n on and for result n; `copy` fills the colours of a run of results.

struct No_Colors {
  const KT_RGB32* in(int) const { return nullptr; }
  KT_RGB32* out(int) const { return nullptr; }
  void copy(int, int, int) const {}
  void draw_whole(const Guarded_Call& call) const { draw(call, call.count, 0); }
  void draw(const Guarded_Call& call, int count, int) const {
    call.draw<KT_Action::Draw_2DI_Polyline>(count);
  }
};

/// A colour a segment, or one for all: a piece begins with the colour of its first segment.
struct Segment_Colors {
  const KT_RGB32* colors;
  bool single_color;

  const KT_RGB32* in(int n) const { return single_color ? colors : from(colors, n); }
  KT_RGB32* out(int) const { return nullptr; }
  void copy(int, int, int) const {}
  void draw_whole(const Guarded_Call& call) const { draw(call, call.count, 0); }
  void draw(const Guarded_Call& call, int count, int first) const {
    call.draw<KT_Action::Draw_2DI_Colorized_Polyline>(count, in(first), single_color);
  }
};

struct Point_Colors {
  const KT_RGB32* colors;
  KT_RGB32* results;

  const KT_RGB32* in(int n) const { return from(colors, n); }
  KT_RGB32* out(int n) const { return results + n; }
  void copy(int first, int n, int to) const { std::copy_n(colors + first, n, results + to); }
  void draw(const Guarded_Call& call, int count, int) const {
    call.draw<KT_Action::Draw_2DI_Gouraud_Polyline>(count, static_cast<const KT_RGB32*>(results));
  }
};

/// The sides beyond which a point lies; none for the end of a list.
unsigned sides_of(short code) {
  return static_cast<unsigned>(code) & beyond_any;
}
bool is_outside(short code) {
  return sides_of(code) != 0;
}

template <class Colors>
class Pieces {
 public:
  Pieces(const Guarded_Call& call, const Colors& colors) : call_(call), colors_(colors) {}

  void draw() const {
    short* const codes = call_.codes;
    codes[call_.count] = list_end;
    int n = 0;
    if (codes[0] == 0) {
      while (codes[n] == 0) ++n;
      put_run(0, n, 0);
      if (draw_to_exit(n, n, 0)) return;
    }
    for (;;) {
      n = draw_outside(n);
      if (codes[n + 1] == list_end) return;
      KD_Preclip_Head(codes[n], call_.guard, call_.points + n, call_.results, colors_.in(n),
                      colors_.out(0));
      call_.take_origin_off(call_.results[0]);
      const int first = n++;
      const int first_inside = n;
      while (codes[n] == 0) ++n;
      put_run(first_inside, n - first_inside, 1);
      if (draw_to_exit(n, n - first_inside + 1, first)) return;
    }
  }

 private:
  void put_run(int first, int n, int to) const {
    call_.convert(first, n, to);
    colors_.copy(first, n, to);
  }

  /// Draws `count` results, which begin with segment `first`, as far as the guard rectangle goes:
  /// point `next` ends the line, for which it returns true, or lies outside.
  bool draw_to_exit(int next, int count, int first) const {
    const short code = call_.codes[next];
    if (code == list_end) {
      colors_.draw(call_, count, first);
      return true;
    }
    KD_Preclip_Tail(code, call_.guard, call_.points + next - 1, call_.results + count,
                    colors_.in(next - 1), colors_.out(count));
    call_.take_origin_off(call_.results[count]);
    colors_.draw(call_, count + 1, first);
    return false;
  }

  /// From outside point `n` on, while the next one lies outside too; returns the last of them.
  int draw_outside(int n) const {
    const short* const codes = call_.codes;
    for (; codes[n + 1] != list_end && is_outside(codes[n + 1]); ++n) {
      if ((sides_of(codes[n]) & sides_of(codes[n + 1])) != 0) continue;
      if (!KD_Preclip_Ends(codes + n, call_.guard, call_.points + n, call_.results, colors_.in(n),
                           colors_.out(0))) {
        continue;
      }
      call_.take_origin_off(call_.results[0]);
      call_.take_origin_off(call_.results[1]);
      colors_.draw(call_, 2, n);
    }
    return n;
  }

  const Guarded_Call& call_;
  const Colors& colors_;
};

/// Lines whose pieces take their colours from the caller's arrays.
template <class Colors>
struct Line : Colors {
  void draw_pieces(const Guarded_Call& call) const { Pieces<Colors>(call, *this).draw(); }
};

struct Release {
  void operator()(KT_RGB32* block) const { KD_ReleaseMemory(block); }
};

KT_RGB32* framework_colors(int count) {
  void* block = KD_AllocateMemory(static_cast<std::size_t>(count) * sizeof(KT_RGB32), nullptr);
  if (block == nullptr) throw std::bad_alloc();
  return static_cast<KT_RGB32*>(block);
}

struct Gouraud_Line {
  const KT_RGB32* colors;

  void draw_whole(const Guarded_Call& call) const {
    call.draw<KT_Action::Draw_2DI_Gouraud_Polyline>(call.count, colors);
  }
  /// Colours of results on the stack, of longer lines in the framework's memory.
  void draw_pieces(const Guarded_Call& call) const {
    constexpr int on_stack = 64;
    KT_RGB32 few[on_stack];
    const std::unique_ptr<KT_RGB32, Release> many(
        call.count > on_stack ? framework_colors(call.count) : nullptr);
    const Point_Colors by_point{colors, many ? many.get() : few};
    Pieces<Point_Colors>(call, by_point).draw();
  }
};

}  // namespace

void draw_polyline(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                   const KT_Point_D* points) {
  draw_guarded(object, rendition, count, points, Line<No_Colors>{});
}

void draw_colorized_polyline(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                             const KT_Point_D* points, const KT_RGB32* colors, bool single_color) {
  draw_guarded(object, rendition, count, points, Line<Segment_Colors>{{colors, single_color}});
}

void draw_gouraud_polyline(KT_Renderer_Data* object, const KT_Rendition& rendition, int count,
                           const KT_Point_D* points, const KT_RGB32* colors) {
  draw_guarded(object, rendition, count, points, Gouraud_Line{colors});
}

}  // namespace zbuffer::tiling
