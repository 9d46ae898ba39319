// Fitting the channels of the input and of the result to a format.
#include "media/output_form.h"

namespace vitrell::media {
namespace {

void AddColours(const Picture& input, bool grey, OutputForm& form) {
  const ChannelLayout& layout = input.layout;
  form.channels.push_back({Role::kRed, layout.red});
  if (grey) return;
  form.channels.push_back({Role::kGreen, layout.green});
  form.channels.push_back({Role::kBlue, layout.blue});
}

void AddExtraChannels(const Picture& input, const Format& format, OutputForm& form,
                      std::vector<std::string>& notices) {
  const ChannelLayout& layout = input.layout;
  bool dropped = false;
  for (int channel = 0; channel < input.spec.nchannels; ++channel) {
    if (channel == layout.red || channel == layout.green || channel == layout.blue ||
        channel == layout.alpha) {
      continue;
    }
    if (format.anyChannels) {
      form.channels.push_back({Role::kExtra, channel});
    } else {
      dropped = true;
    }
  }
  if (dropped) notices.emplace_back("channels beyond colour and alpha are left out.");
}

}  // namespace

bool NeedsWholeFrame(const Picture& input, const Format& format) {
  return !format.windows && input.Data() != Window{0, 0, input.Width(), input.Height()};
}

OutputForm ChooseForm(const Picture& input, const ResultTraits& result, const Format& format,
                      std::vector<std::string>& notices) {
  OutputForm form;
  const Window frame{0, 0, input.Width(), input.Height()};
  form.wholeFrame = NeedsWholeFrame(input, format);
  const bool grey = input.layout.IsGrey() && result.grey;
  if (input.layout.IsGrey() && !grey) {
    notices.emplace_back("the grey input came out coloured; the output is RGB.");
  }
  const bool wantsAlpha = input.layout.HasAlpha() || !result.opaque;
  const bool storesAlpha = format.alpha || (grey && format.greyAlpha);
  const bool storesGrey = wantsAlpha && storesAlpha ? format.greyAlpha : format.grey;
  AddColours(input, grey && storesGrey, form);
  if (wantsAlpha && storesAlpha) {
    if (!input.layout.HasAlpha()) {
      const bool empty = form.wholeFrame && input.Seen() != frame;
      notices.emplace_back(
          empty ? "what lies outside the data window is transparent; the output has an "
                  "alpha channel."
                : "the effect made parts transparent; the output has an alpha channel.");
    }
    form.channels.push_back({Role::kAlpha, input.layout.alpha});
  } else if (!result.opaque) {
    notices.emplace_back("the format stores no transparency; the picture is laid over black.");
  }
  AddExtraChannels(input, format, form, notices);
  if (!wantsAlpha || (format.straight && storesAlpha)) {
    form.straight = true;
  } else if (!storesAlpha || format.plugin != "tiff") {
    form.straight = false;
  } else {
    form.straight = input.straight;
  }
  return form;
}

}  // namespace vitrell::media
