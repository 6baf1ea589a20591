// The videos of a disc: what ffprobe says about one (is it DVD MPEG-2 already, of which
// television standard, how long), and ffmpeg's conversion of one that is not, with progress.
// The menu stills are made here too, since they are videos of the same kind.
#ifndef TOLVEX_TOOLS_AUTHOR_VIDEO_H
#define TOLVEX_TOOLS_AUTHOR_VIDEO_H

#include <functional>
#include <optional>
#include <string>

namespace menutool::author {

enum class Standard { kNtsc, kPal };

const char* StandardName(Standard standard);  // "NTSC" or "PAL"

struct VideoFacts {
  bool dvdReady = false;              // MPEG-2 program stream a DVD takes as it is
  std::optional<Standard> standard;   // evident from its frame rate; none for, say, 15 fps
  double seconds = 0;                 // 0 when unknown
};

// Asks ffprobe (at `ffprobe`) about `file`; throws ToolError "<file>: cannot read the video: ..."
// when it cannot, or when the file has no video stream.
VideoFacts ProbeVideo(const std::string& ffprobe, const std::string& file);

// The length of the audio file `file` in seconds; throws ToolError when ffprobe cannot read it.
double ProbeAudioSeconds(const std::string& ffprobe, const std::string& file);

// Converts `input` to DVD MPEG-2 `output` of `standard`, fitted into a 4:3 picture; calls
// `progress` with the fraction done (0..1) as ffmpeg reports it. Throws ToolError on failure.
void ConvertVideo(const std::string& ffmpeg, const std::string& input, const std::string& output,
                  Standard standard, double seconds,
                  const std::function<void(double)>& progress);

// Makes the still menu MPEG-2 `output` of `standard` from the picture `picture`, with `music`
// as its sound (the still lasts as long as the music) or a second of silence when it is empty.
void MakeMenuStill(const std::string& ffmpeg, const std::string& picture,
                   const std::string& music, Standard standard, const std::string& output);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_VIDEO_H
