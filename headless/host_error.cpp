// The names of the host's error codes and their explanations for users.
#include "headless/host_error.h"

namespace vitrell::headless {
namespace {

struct ErrorText {
  PF_Err error;
  const char* name;
  const char* meaning;
};

constexpr ErrorText kErrorTexts[] = {
    {PF_Err_NONE, "PF_Err_NONE", "no error"},
    {PF_Err_OUT_OF_MEMORY, "PF_Err_OUT_OF_MEMORY",
     "there was not enough memory for the render; a smaller picture or a smaller blur needs less"},
    {PF_Err_INTERNAL_STRUCT_DAMAGED, "PF_Err_INTERNAL_STRUCT_DAMAGED",
     "a record shared by the host and the effect is damaged"},
    {PF_Err_INVALID_INDEX, "PF_Err_INVALID_INDEX",
     "a parameter was asked for by an index that does not exist"},
    {PF_Err_UNRECOGNIZED_PARAM_TYPE, "PF_Err_UNRECOGNIZED_PARAM_TYPE",
     "a parameter has a type that the host does not know"},
    {PF_Err_INVALID_CALLBACK, "PF_Err_INVALID_CALLBACK",
     "a host function was called at a time or from a place where it is not available"},
    {PF_Err_BAD_CALLBACK_PARAM, "PF_Err_BAD_CALLBACK_PARAM",
     "a host suite or callback that the effect needs is missing or was called wrongly"},
    {PF_Interrupt_CANCEL, "PF_Interrupt_CANCEL", "the render was cancelled"},
    {PF_Err_CANNOT_PARSE_KEYFRAME_TEXT, "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT",
     "the text of a keyframe cannot be read"},
};

const ErrorText* FindText(PF_Err error) {
  for (const ErrorText& text : kErrorTexts) {
    if (text.error == error) return &text;
  }
  return nullptr;
}

}  // namespace

std::string ErrorName(PF_Err error) {
  const ErrorText* text = FindText(error);
  return text != nullptr ? text->name : "unknown error";
}

std::string DescribeError(PF_Err error) {
  const ErrorText* text = FindText(error);
  const std::string meaning =
      text != nullptr ? text->meaning : "the effect returned a code that the host does not define";
  return ErrorName(error) + " (" + std::to_string(error) + "): " + meaning;
}

}  // namespace vitrell::headless
