// Reading metadata blocks through libheif.
#include "media/heif_blocks.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "media/heif_records.h"

namespace vitrell::media {
namespace {

// The largest block that is read; a damaged file may claim any size.
constexpr std::size_t kMostBytes = 64 << 20;

std::string BlockOf(const heif_image_handle* handle, heif_item_id id) {
  const std::size_t size = heif_image_handle_get_metadata_size(handle, id);
  if (size == 0 || size > kMostBytes) return {};
  std::string block(size, '\0');
  if (heif_image_handle_get_metadata(handle, id, block.data()).code != heif_error_Ok) return {};
  return block;
}

// The block begins with four bytes: the offset of the TIFF header.
std::string WithoutOffset(const std::string& block) {
  constexpr std::size_t kOffsetBytes = 4;
  if (block.size() < kOffsetBytes) return {};
  std::size_t offset = 0;
  for (std::size_t i = 0; i < kOffsetBytes; ++i) {
    offset = offset << 8U | static_cast<uint8_t>(block[i]);
  }
  return offset < block.size() - kOffsetBytes ? block.substr(kOffsetBytes + offset) : "";
}

std::string ProfileOf(const heif_image_handle* handle) {
  const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle);
  if (size == 0 || size > kMostBytes) return {};
  std::string profile(size, '\0');
  const heif_error error = heif_image_handle_get_raw_color_profile(handle, profile.data());
  return error.code == heif_error_Ok ? profile : "";
}

}  // namespace

HeifBlocks ReadHeifBlocks(const std::filesystem::path& file) {
  const HeifContext context(heif_context_alloc());
  heif_image_handle* picture = nullptr;
  if (heif_context_read_from_file(context.get(), file.c_str(), nullptr).code != heif_error_Ok ||
      heif_context_get_primary_image_handle(context.get(), &picture).code != heif_error_Ok) {
    return {};
  }
  const HeifHandle handle(picture);
  const int count = heif_image_handle_get_number_of_metadata_blocks(picture, nullptr);
  std::vector<heif_item_id> ids(static_cast<std::size_t>(count));
  heif_image_handle_get_list_of_metadata_block_IDs(picture, nullptr, ids.data(), count);
  HeifBlocks blocks;
  for (const heif_item_id id : ids) {
    const std::string_view type = heif_image_handle_get_metadata_type(picture, id);
    const std::string_view content = heif_image_handle_get_metadata_content_type(picture, id);
    if (type == "Exif") blocks.exif = WithoutOffset(BlockOf(picture, id));
    if (type == "mime" && content == "application/rdf+xml") blocks.xmp = BlockOf(picture, id);
  }
  blocks.profile = ProfileOf(picture);
  return blocks;
}

}  // namespace vitrell::media
