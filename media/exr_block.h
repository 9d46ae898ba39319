// Frame buffers for blocks of rows of the rendered EXR part.
#ifndef VITRELL_MEDIA_EXR_BLOCK_H_
#define VITRELL_MEDIA_EXR_BLOCK_H_

#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputPart.h>
#include <OpenImageIO/imageio.h>

#include <cstddef>
#include <string>
#include <vector>

#include "media/exchange.h"
#include "media/result_rows.h"

namespace vitrell::media {

// Bytes of a sample.
std::size_t BytesOf(Imf::PixelType type);

// Rendered channels are filled from the effect's rows, all others from the input file, bit for bit.
// The constructor's references must outlive the object.
class ExrBlock {
 public:
  // `header` is that of the rendered part in the output.
  ExrBlock(const Imf::Header& header, const OIIO::ImageSpec& spec, const OutputForm& form,
           ResultRows& rows);

  // All channels of these rows, in data window coordinates. Valid until the next call.
  const Imf::FrameBuffer& Fill(Imf::InputPart& source, int top, int rows);

 private:
  struct Column {
    std::string name;
    Imf::PixelType type;
    std::vector<char> bytes;
  };

  Imf::Slice SliceOf(std::size_t i, int top, int rows, const char* taken);
  void Convert(Column& column, const float* from, std::size_t pixels) const;

  const Imath::Box2i window_;
  const std::size_t width_;
  const OutputForm& form_;
  ResultRows& rows_;
  std::vector<Column> columns_;
  Imf::FrameBuffer buffer_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXR_BLOCK_H_
