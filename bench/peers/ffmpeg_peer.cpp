// FFmpeg's filter library: three successive box blurs, and lens correction with bilinear sampling.
extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
}

#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/peers/peer.h"

namespace vitrell::peers {
namespace {

// These filters work on planar images: red, green, blue and alpha are planes 2, 0, 1 and 3.
constexpr std::array<std::size_t, 4> kPlaneOfChannel = {2, 0, 1, 3};

struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreeGraph {
  void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
};
using Frame = std::unique_ptr<AVFrame, FreeFrame>;

void Check(int code, const char* what) {
  if (code < 0) throw std::runtime_error(std::string(what) + " failed: " + std::to_string(code));
}

std::uint8_t* Row(const AVFrame& frame, std::size_t channel, int y) {
  const std::size_t plane = kPlaneOfChannel[channel];
  return frame.data[plane] + std::ptrdiff_t{y} * frame.linesize[plane];
}

Frame ToFrame(const Picture8& picture) {
  Frame frame(av_frame_alloc());
  if (frame == nullptr) throw std::runtime_error("no memory");
  frame->format = AV_PIX_FMT_GBRAP;
  frame->width = picture.width;
  frame->height = picture.height;
  Check(av_frame_get_buffer(frame.get(), 0), "a frame");
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      for (std::size_t channel = 0; channel < 4; ++channel) {
        Row(*frame, channel, y)[x] = picture.rgba[picture.At(x, y) + channel];
      }
    }
  }
  return frame;
}

Picture8 FromFrame(const AVFrame& frame) {
  Picture8 picture{frame.width, frame.height, {}};
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      for (std::size_t channel = 0; channel < 4; ++channel) {
        picture.rgba.push_back(Row(frame, channel, y)[x]);
      }
    }
  }
  return picture;
}

// A filter graph source -> filter -> sink, on one thread.
class Chain {
 public:
  Chain(const Picture8& picture, const char* filter, const char* options)
      : graph_(avfilter_graph_alloc()) {
    if (graph_ == nullptr) throw std::runtime_error("no memory");
    graph_->nb_threads = 1;
    const std::string size = "video_size=" + std::to_string(picture.width) + "x" +
                             std::to_string(picture.height) +
                             ":pix_fmt=gbrap:time_base=1/25:pixel_aspect=1/1";
    AVFilterContext* middle = nullptr;
    Make(&source_, "buffer", size.c_str());
    Make(&middle, filter, options);
    Make(&sink_, "buffersink", nullptr);
    Check(avfilter_link(source_, 0, middle, 0), "linking");
    Check(avfilter_link(middle, 0, sink_, 0), "linking");
    Check(avfilter_graph_config(graph_.get(), nullptr), "configuring");
    // A fourth filter would be an implicit pixel format conversion, which must not be measured.
    if (graph_->nb_filters != 3) throw std::runtime_error("a conversion was put in");
  }

  Frame Run(AVFrame* input) {
    Check(av_buffersrc_add_frame_flags(source_, input, AV_BUFFERSRC_FLAG_KEEP_REF), "feeding");
    Frame output(av_frame_alloc());
    Check(av_buffersink_get_frame(sink_, output.get()), "filtering");
    return output;
  }

 private:
  void Make(AVFilterContext** context, const char* filter, const char* options) {
    Check(avfilter_graph_create_filter(context, avfilter_get_by_name(filter), filter, options,
                                       nullptr, graph_.get()),
          filter);
  }

  std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
  AVFilterContext* source_ = nullptr;
  AVFilterContext* sink_ = nullptr;
};

void Measure(const Peer& peer) {
  const Frame input = ToFrame(peer.Input());
  const auto measure = [&](const char* name, const char* filter, const char* options) {
    Chain chain(peer.Input(), filter, options);
    Frame output;
    peer.Measure(
        name, [&] { output = chain.Run(input.get()); }, [&] { return FromFrame(*output); });
  };
  measure("boxblur3/r20", "boxblur", "lr=20:lp=3:cr=20:cp=3:ar=0:ap=0");
  measure("lenscorrection/bilinear", "lenscorrection", "k1=-0.2:k2=0.02:i=bilinear");
}

}  // namespace
}  // namespace vitrell::peers

int main(int argc, char** argv) {
  av_log_set_level(AV_LOG_ERROR);
  return vitrell::peers::RunPeer("ffmpeg", argc, argv, &vitrell::peers::Measure);
}
