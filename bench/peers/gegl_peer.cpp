// GEGL: box blur, lens blur plain and by map, linear and zooming motion blur, lens distortion.
#include <gegl.h>

#include <functional>
#include <string>

#include "bench/peers/peer.h"

namespace vitrell::peers {
namespace {

struct Buffers {
  GeglRectangle area;
  GeglBuffer* input;
  GeglBuffer* map;
};

// Renders source -> operation (with the map on its auxiliary input if byMap) to memory, uncached.
void Run(const Peer& peer, const Buffers& buffers, const std::string& caseName, bool byMap,
         const std::function<GeglNode*(GeglNode*)>& makeOperation) {
  GeglNode* const graph = gegl_node_new();
  g_object_set(graph, "dont-cache", TRUE, nullptr);
  GeglNode* const source = gegl_node_new_child(graph, "operation", "gegl:buffer-source", "buffer",
                                               buffers.input, nullptr);
  GeglNode* const operation = makeOperation(graph);
  gegl_node_connect_to(source, "output", operation, "input");
  if (byMap) {
    GeglNode* const map = gegl_node_new_child(graph, "operation", "gegl:buffer-source", "buffer",
                                              buffers.map, nullptr);
    gegl_node_connect_to(map, "output", operation, "aux");
  }
  Picture8 output = peer.SameSize();
  peer.Measure(
      caseName,
      [&] {
        gegl_node_blit(operation, 1.0, &buffers.area, babl_format("R'G'B'A u8"), output.rgba.data(),
                       GEGL_AUTO_ROWSTRIDE, GEGL_BLIT_DEFAULT);
      },
      [&] { return output; });
  g_object_unref(graph);
}

void LensBlurs(const Peer& peer, const Buffers& buffers) {
  for (const bool byMap : {false, true}) {
    for (const double radiusPx : {20.0, 50.0}) {
      Run(peer, buffers,
          std::string(byMap ? "lens-blur-map/r" : "lens-blur/r") +
              std::to_string(static_cast<int>(radiusPx)),
          byMap, [radiusPx](GeglNode* graph) {
            return gegl_node_new_child(graph, "operation", "gegl:lens-blur", "radius", radiusPx,
                                       nullptr);
          });
    }
  }
}

void MotionBlurs(const Peer& peer, const Buffers& buffers) {
  Run(peer, buffers, "motion-blur-linear/41", false, [](GeglNode* graph) {
    return gegl_node_new_child(graph, "operation", "gegl:motion-blur-linear", "length", 41.0,
                               "angle", 90.0, nullptr);
  });
  for (const double factor : {0.05, 0.2}) {
    Run(peer, buffers, factor < 0.1 ? "motion-blur-zoom/0.05" : "motion-blur-zoom/0.2", false,
        [factor](GeglNode* graph) {
          return gegl_node_new_child(graph, "operation", "gegl:motion-blur-zoom", "factor", factor,
                                     nullptr);
        });
  }
}

void Measure(const Peer& peer) {
  const Picture8& picture = peer.Input();
  Buffers buffers{{0, 0, picture.width, picture.height}, nullptr, nullptr};
  buffers.input = gegl_buffer_new(&buffers.area, babl_format("R'G'B'A u8"));
  gegl_buffer_set(buffers.input, &buffers.area, 0, babl_format("R'G'B'A u8"), picture.rgba.data(),
                  GEGL_AUTO_ROWSTRIDE);
  const std::vector<std::uint8_t> map = SoftCircle(picture.width, picture.height);
  buffers.map = gegl_buffer_new(&buffers.area, babl_format("Y u8"));
  gegl_buffer_set(buffers.map, &buffers.area, 0, babl_format("Y u8"), map.data(),
                  GEGL_AUTO_ROWSTRIDE);
  Run(peer, buffers, "box-blur/r20", false, [](GeglNode* graph) {
    return gegl_node_new_child(graph, "operation", "gegl:box-blur", "radius", 20, nullptr);
  });
  LensBlurs(peer, buffers);
  MotionBlurs(peer, buffers);
  Run(peer, buffers, "lens-distortion", false, [](GeglNode* graph) {
    return gegl_node_new_child(graph, "operation", "gegl:lens-distortion", "main", 40.0, nullptr);
  });
  g_object_unref(buffers.input);
  g_object_unref(buffers.map);
}

}  // namespace
}  // namespace vitrell::peers

int main(int argc, char** argv) {
  // Some operations are available only to programs that declare a compatible licence; this program
  // is never distributed. Without a swap file, buffers stay in memory.
  g_object_set(gegl_config(), "application-license", "GPL3", "threads", 1, "use-opencl", FALSE,
               "swap", nullptr, nullptr);
  gegl_init(nullptr, nullptr);
  const int exitCode = vitrell::peers::RunPeer("gegl", argc, argv, &vitrell::peers::Measure);
  gegl_exit();
  return exitCode;
}
