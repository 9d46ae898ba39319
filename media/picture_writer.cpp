// Writing pictures beside their target.
#include "media/picture_writer.h"

#include "media/failure.h"
#include "media/output_file.h"
#include "media/picture_encoder.h"
#include "media/safe_writer.h"
#include "media/standard_streams.h"

namespace vitrell::media {

namespace fs = std::filesystem;

const Format& FormatFor(const fs::path& target) {
  const Format* format = FormatToWrite(IsStandardStream(target) ? "standard-output.png" : target);
  if (format != nullptr) return *format;
  throw Failure(kFailed,
                ShownTarget(target) +
                    ": no format that is written has this extension. Use .png, .jpg, .tif, .exr or "
                    "another one that `vitrell formats` lists.");
}

void CheckEncodingFor(const fs::path& target, const Encoding& encoding) {
  CheckEncoding(encoding, FormatFor(target));
}

void CheckWritable(const fs::path& target, const Encoding& encoding) {
  CheckEncodingFor(target, encoding);
  MakeWriter(FormatFor(target), target);
}

std::vector<std::string> WritePicture(const Picture& input, const headless::WorldBuffer& given,
                                      const headless::WorldBuffer& result, const WriteOrder& order,
                                      const FileProgress& progress) {
  const Format& format = FormatFor(order.target);
  OutputFile file(order.target,
                  order.onlyTry ? OutputFile::Purpose::kTry : OutputFile::Purpose::kWrite);
  EncodedPicture encoded =
      EncodePicture(input, given, result, order, format, file.TemporaryPath(), progress);
  std::vector<std::string>& notices = encoded.notices;
  notices.insert(notices.end(), file.Notices().begin(), file.Notices().end());
  const std::string prefix = ShownTarget(order.target) + ": ";
  for (std::string& notice : notices) notice.insert(0, prefix);
  if (order.agree) order.agree(encoded.header, format, notices);
  if (!order.onlyTry) file.Commit(order.force);
  return notices;
}

}  // namespace vitrell::media
