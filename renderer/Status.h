// Why a rendering step failed. Every internal step of the renderers returns one of these (and
// records the reason in words through Failure.h); the exported functions collapse them to 0 or
// 1 and a reason at their boundary, and nothing else sees them.
#ifndef TOLVEX_RENDERER_STATUS_H
#define TOLVEX_RENDERER_STATUS_H

namespace tolvex::render {

enum class Status {
  kOk,
  kBadArgument,         // null path, non-positive or absurd size
  kTemplateUnreadable,  // no template file, or no section "Background" in it
  kPictureUnreadable,   // a named picture is missing or cannot be decoded
  kPictureTooLarge,     // a picture claims more pixels than we are willing to decode
  kOutputUnwritable,    // the output (or its temporary) cannot be written or renamed
  kRecordFailed,        // the default output name could not be written into the template
  kDrawingFailed,       // cairo or pango reported an error (usually out of memory)
};

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_STATUS_H
