// The videos of a disc: what ffprobe says about one (container, codecs, size, pixel shape,
// rotation, frame rate, sound, length), and ffmpeg carrying out the plan made for it
// (VideoPlan.h), with progress. The menu stills are made here too, since they are videos of the
// same kind.
#ifndef TOLVEX_TOOLS_AUTHOR_VIDEO_H
#define TOLVEX_TOOLS_AUTHOR_VIDEO_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace menutool::author {

enum class Standard { kNtsc, kPal };

inline const char* StandardName(Standard standard) {
  return standard == Standard::kNtsc ? "NTSC" : "PAL";
}

struct Sound {
  std::string codec;  // ffprobe's name: "ac3", "aac", "pcm_dvd", ...
  int rate = 0;       // samples a second
  int channels = 0;
};

struct VideoFacts {
  std::string container;      // ffprobe's format name: "mpeg" for an MPEG program stream
  std::string codec;          // of the picture: "mpeg2video", "h264", ...
  int width = 0, height = 0;  // stored pixels
  double fps = 0;             // frames a second, 0 when unknown
  double pixelAspect = 1;     // width of a stored pixel over its height
  double flaggedAspect = 0;   // the display aspect the stream states, 0 when none
  int rotation = 0;           // quarter turns for display, in degrees: 0, 90, 180 or 270
  bool interlaced = false;    // the picture is made of two fields
  std::vector<Sound> sounds;  // every audio stream, in order
  double seconds = 0;         // 0 when unknown
  uint64_t bytes = 0;         // size of the file
};

// Asks ffprobe (at `ffprobe`) about `file`; throws ToolError "<file>: cannot read the video: ..."
// when it cannot, or when the file has no video stream.
VideoFacts ProbeVideo(const std::string& ffprobe, const std::string& file);

// The facts in ffprobe's JSON (-show_format -show_streams) about `file`, which has the size
// `bytes`; throws as ProbeVideo does when it holds no picture stream.
VideoFacts VideoFactsOf(const std::string& probeJson, const std::string& file, uint64_t bytes);

// The length of the audio file `file` in seconds; throws ToolError when ffprobe cannot read it.
double ProbeAudioSeconds(const std::string& ffprobe, const std::string& file);

struct VideoPlan;

// Writes the DVD MPEG-2 program stream `output` from `input` as `plan` says (a plan other than
// kAsItIs): the picture encoded at `videoBitrate` bits a second and fitted into the title's
// frame, or copied; the sound encoded as AC-3, or a silent track. Calls `progress` with the
// fraction done (0..1) as ffmpeg reports it. Throws ToolError on failure.
void ConvertVideo(const std::string& ffmpeg, const std::string& input, const std::string& output,
                  const VideoFacts& video, const VideoPlan& plan, double videoBitrate,
                  const std::function<void(double)>& progress);

// Makes the still menu MPEG-2 `output` of `standard` from the picture `picture`, with `music`
// as its sound (the still lasts as long as the music) or a second of silence when it is empty.
void MakeMenuStill(const std::string& ffmpeg, const std::string& picture,
                   const std::string& music, Standard standard, const std::string& output);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_VIDEO_H
