// Renders SVG icons with librsvg, the reference renderer of desktop icons. Protocol on standard input and output:
// platform/system/IconRequest.h. A separate process, because a few hundred bytes of SVG can make the library abort, run
// for minutes or allocate gigabytes: here that fails a single icon. No base URI is set, so that the library loads no
// file and no URL that an image refers to.
#include <librsvg/rsvg.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "platform/system/IconRequest.h"

namespace {

constexpr rlim_t mostMemory = 256 << 20;
constexpr time_t longestDrawing = 1;  // second of processor time

template <class Type>
using Owned = std::unique_ptr<Type, void (*)(Type*)>;

void limitMemory() {
    const rlimit memory{mostMemory, mostMemory}, core{0, 0};
    setrlimit(RLIMIT_DATA, &memory);
    setrlimit(RLIMIT_CORE, &core);
}

// Restarts the timer. When it expires, SIGPROF terminates the process.
void limitTime() {
    const itimerval time{{0, 0}, {longestDrawing, 0}};
    setitimer(ITIMER_PROF, &time, nullptr);
}

// The frame of the image in a square: centred, aspect ratio kept even if the image permits otherwise. Its origin is a
// whole pixel, so that edges on the pixel grid stay sharp.
RsvgRectangle frameIn(RsvgHandle* picture, double side) {
    double width = 0, height = 0;
    if (!rsvg_handle_get_intrinsic_size_in_pixels(picture, &width, &height)) {
        gboolean hasBox = FALSE;
        RsvgRectangle box{};
        rsvg_handle_get_intrinsic_dimensions(picture, nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
        width = hasBox ? box.width : side;
        height = hasBox ? box.height : side;
    }
    const double scale = std::min(side / width, side / height);
    width *= scale;
    height *= scale;
    return {std::floor((side - width) / 2), std::floor((side - height) / 2), width, height};
}

// Renders into `pixels`: premultiplied ARGB32, initially transparent.
bool draw(const std::vector<guint8>& svg, std::vector<guint32>& pixels, int side) {
    const Owned<RsvgHandle> picture(rsvg_handle_new_from_data(svg.data(), svg.size(), nullptr),
                                    [](RsvgHandle* handle) { g_object_unref(handle); });
    if (!picture) return false;
    rsvg_handle_set_dpi(picture.get(), 96);
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, side,
                                            side, side * static_cast<int>(sizeof(guint32))),
        cairo_surface_destroy);
    const Owned<cairo_t> context(cairo_create(surface.get()), cairo_destroy);
    const RsvgRectangle frame = frameIn(picture.get(), side);
    if (!(frame.width > 0 && frame.height > 0)) return false;
    const bool isDrawn = rsvg_handle_render_document(picture.get(), context.get(), &frame, nullptr);
    cairo_surface_flush(surface.get());
    return isDrawn;
}

template <class Item>
bool read(Item* items, std::size_t count) {
    return std::fread(items, sizeof(Item), count, stdin) == count;
}

}  // namespace

int main() {
    limitMemory();
    platform::IconRequest request;
    while (read(&request, 1)) {
        std::vector<guint8> svg(request.length);
        std::vector<guint32> pixels(std::size_t{request.side} * request.side);
        if (!read(svg.data(), svg.size())) break;
        limitTime();
        if (!draw(svg, pixels, static_cast<int>(request.side))) return 1;
        std::fwrite(pixels.data(), sizeof(guint32), pixels.size(), stdout);
        std::fflush(stdout);
    }
}
