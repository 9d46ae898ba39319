// OpenCV: box blurs, pentagon and line by filter2D, remap with precomputed maps, look-up and blend.
#include <cmath>
#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "bench/peers/peer.h"

namespace vitrell::peers {
namespace {

Picture8 FromMat(const cv::Mat& mat) {
  return {mat.cols, mat.rows, std::vector<std::uint8_t>(mat.datastart, mat.dataend)};
}

// The source position of each pixel of an image seen through a lens with this field of view.
void LensMaps(cv::Size size, double fieldOfView, cv::Mat* mapX, cv::Mat* mapY) {
  mapX->create(size, CV_32FC1);
  mapY->create(size, CV_32FC1);
  const double halfDiagonal = std::hypot(size.width, size.height) / 2;
  const double focal = halfDiagonal / std::tan(fieldOfView / 2);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const double dx = x - size.width / 2.0;
      const double dy = y - size.height / 2.0;
      const double distance = std::hypot(dx, dy);
      const double bend = distance > 0 ? focal * std::atan(distance / focal) / distance : 1;
      mapX->at<float>(y, x) = static_cast<float>(size.width / 2.0 + dx * bend);
      mapY->at<float>(y, x) = static_cast<float>(size.height / 2.0 + dy * bend);
    }
  }
}

void Blurs(const Peer& peer, const cv::Mat& input) {
  cv::Mat output;
  const auto result = [&] { return FromMat(output); };
  peer.Measure(
      "blur3/r20",
      [&] {
        cv::blur(input, output, {41, 41}, {-1, -1}, cv::BORDER_REFLECT_101);
        cv::blur(output, output, {41, 41}, {-1, -1}, cv::BORDER_REFLECT_101);
        cv::blur(output, output, {41, 41}, {-1, -1}, cv::BORDER_REFLECT_101);
      },
      result);
  for (const int radiusPx : {20, 50, 100}) {
    const cv::Mat kernel = cv::Mat(PentagonKernel(radiusPx), true).reshape(1, 2 * radiusPx + 1);
    peer.Measure(
        "pentagon/r" + std::to_string(radiusPx),
        [&] {
          cv::filter2D(input, output, -1, kernel, {-1, -1}, 0, cv::BORDER_REFLECT_101);
        },
        result);
  }
  const cv::Mat line(41, 1, CV_32FC1, cv::Scalar(1.0 / 41));
  peer.Measure(
      "line/41",
      [&] {
        cv::filter2D(input, output, -1, line, {-1, -1}, 0, cv::BORDER_REFLECT_101);
      },
      result);
}

void Points(const Peer& peer, const cv::Mat& input) {
  cv::Mat output;
  const auto result = [&] { return FromMat(output); };
  cv::Mat mapX;
  cv::Mat mapY;
  LensMaps(input.size(), CV_PI / 2, &mapX, &mapY);
  peer.Measure(
      "remap/bilinear",
      [&] { cv::remap(input, output, mapX, mapY, cv::INTER_LINEAR, cv::BORDER_REFLECT_101); },
      result);
  cv::Mat table(1, 256, CV_8UC1);
  for (int i = 0; i < 256; ++i) {
    table.at<std::uint8_t>(i) = static_cast<std::uint8_t>(255 * std::pow(i / 255.0, 0.7) + 0.5);
  }
  peer.Measure(
      "lut", [&] { cv::LUT(input, table, output); }, result);
  cv::Mat other;
  cv::flip(input, other, 1);
  peer.Measure(
      "blend", [&] { cv::addWeighted(input, 0.4, other, 0.6, 0, output); }, result);
}

void Measure(const Peer& peer) {
  Picture8 picture = peer.Input();
  const cv::Mat input(picture.height, picture.width, CV_8UC4, picture.rgba.data());
  Blurs(peer, input);
  Points(peer, input);
}

}  // namespace
}  // namespace vitrell::peers

int main(int argc, char** argv) {
  cv::setNumThreads(1);
  return vitrell::peers::RunPeer("opencv", argc, argv, &vitrell::peers::Measure);
}
