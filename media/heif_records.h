// Records of libheif with owners.
#ifndef VITRELL_MEDIA_HEIF_RECORDS_H_
#define VITRELL_MEDIA_HEIF_RECORDS_H_

#include <libheif/heif.h>

#include <memory>

namespace vitrell::media {

template <auto kFree>
struct HeifFreer {
  template <typename Record>
  void operator()(Record* record) const {
    kFree(record);
  }
};

using HeifContext = std::unique_ptr<heif_context, HeifFreer<&heif_context_free>>;
using HeifEncoder = std::unique_ptr<heif_encoder, HeifFreer<&heif_encoder_release>>;
using HeifImage = std::unique_ptr<heif_image, HeifFreer<&heif_image_release>>;
using HeifHandle = std::unique_ptr<heif_image_handle, HeifFreer<&heif_image_handle_release>>;
using HeifOptions = std::unique_ptr<heif_encoding_options, HeifFreer<&heif_encoding_options_free>>;
using HeifNclx = std::unique_ptr<heif_color_profile_nclx, HeifFreer<&heif_nclx_color_profile_free>>;

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_HEIF_RECORDS_H_
