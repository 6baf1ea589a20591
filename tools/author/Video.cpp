// Probing and converting videos with ffprobe and ffmpeg (see Video.h).
#include "tools/author/Video.h"

#include "tools/cli/ToolError.h"
#include "tools/author/Programs.h"
#include "tools/author/VideoPlan.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace menutool::author {
namespace {

using nlohmann::json;

std::string ProbeText(const std::string& ffprobe, const std::string& file, const char* what) {
  std::string text;
  Invocation run{{ffprobe, "-v", "error", "-print_format", "json", "-show_format",
                  "-show_streams", FileArgument(file)}};
  run.onLine = [&](const std::string& line) { text += line + "\n"; };
  const Outcome outcome = RunProgram(run);
  if (outcome.status != 0) {
    const std::string why = LastLine(outcome.errors);
    throw ToolError(file, std::string("cannot read the ") + what +
                              (why.empty() ? "" : ": " + why));
  }
  return text;
}

std::string Field(const json& object, const char* key) {
  auto it = object.find(key);
  return it != object.end() && it->is_string() ? it->get<std::string>() : std::string();
}

// "16:9" or "32/27" as a number; 0 for "0:1", "N/A" and the like.
double Ratio(const std::string& text) {
  const size_t mark = text.find_first_of(":/");
  if (mark == std::string::npos) return 0;
  const double top = std::atof(text.substr(0, mark).c_str());
  const double bottom = std::atof(text.c_str() + mark + 1);
  return top > 0 && bottom > 0 ? top / bottom : 0;
}

// The quarter turn nearest to `degrees`, as 0, 90, 180 or 270. Only whether the picture lies on
// its side matters for its shape; the direction is ffmpeg's to undo.
int QuarterTurn(double degrees) {
  const long quarters = std::lround(degrees / 90);
  return static_cast<int>(((quarters % 4) + 4) % 4) * 90;
}

}  // namespace

VideoFacts VideoFactsOf(const std::string& probeJson, const std::string& file, uint64_t bytes) {
  const json facts = json::parse(probeJson, nullptr, /*allow_exceptions=*/false);
  if (facts.is_discarded() || !facts.is_object())
    throw ToolError(file, "cannot read the video");
  VideoFacts video;
  video.bytes = bytes;
  const json format = facts.value("format", json::object());
  video.container = Field(format, "format_name");
  video.seconds = std::atof(Field(format, "duration").c_str());
  const json streams = facts.value("streams", json::array());
  const json* picture = nullptr;
  for (const json& stream : streams) {
    const std::string type = Field(stream, "codec_type");
    if (type == "video" && !picture) picture = &stream;
    if (type == "audio")
      video.sounds.push_back({Field(stream, "codec_name"),
                              std::atoi(Field(stream, "sample_rate").c_str()),
                              stream.value("channels", 0)});
  }
  if (!picture) throw ToolError(file, "cannot read the video: it has no picture stream");
  video.codec = Field(*picture, "codec_name");
  video.width = picture->value("width", 0);
  video.height = picture->value("height", 0);
  // The stream's base rate, unless it is a timing grid rather than a frame rate (variable-rate
  // phone clips report 90000 or 120); then the average.
  video.fps = Ratio(Field(*picture, "r_frame_rate"));
  if (video.fps <= 0 || video.fps > 61) video.fps = Ratio(Field(*picture, "avg_frame_rate"));
  if (const double pixel = Ratio(Field(*picture, "sample_aspect_ratio")); pixel > 0)
    video.pixelAspect = pixel;
  video.flaggedAspect = Ratio(Field(*picture, "display_aspect_ratio"));
  const std::string fields = Field(*picture, "field_order");
  video.interlaced = fields == "tt" || fields == "bb" || fields == "tb" || fields == "bt";
  // Phones record upright video on its side with a display matrix (older files: a rotate tag).
  const std::string tag = Field(picture->value("tags", json::object()), "rotate");
  if (!tag.empty()) video.rotation = QuarterTurn(std::atof(tag.c_str()));
  const json sides = picture->value("side_data_list", json::array());
  for (const json& side : sides)
    if (side.is_object() && side.contains("rotation") && side["rotation"].is_number())
      video.rotation = QuarterTurn(side["rotation"].get<double>());
  return video;
}

VideoFacts ProbeVideo(const std::string& ffprobe, const std::string& file) {
  std::error_code error;
  const uintmax_t bytes = std::filesystem::file_size(file, error);
  return VideoFactsOf(ProbeText(ffprobe, file, "video"), file, error ? 0 : bytes);
}

double ProbeAudioSeconds(const std::string& ffprobe, const std::string& file) {
  const json facts = json::parse(ProbeText(ffprobe, file, "music"), nullptr, false);
  if (facts.is_discarded() || !facts.is_object()) throw ToolError(file, "cannot read the music");
  return std::atof(Field(facts.value("format", json::object()), "duration").c_str());
}

void ConvertVideo(const std::string& ffmpeg, const std::string& input, const std::string& output,
                  const VideoFacts& video, const VideoPlan& plan, double videoBitrate,
                  const std::function<void(double)>& progress) {
  const bool ntsc = plan.standard == Standard::kNtsc;
  std::vector<std::string> argv = {ffmpeg, "-nostdin", "-v", "error", "-y", "-i", FileArgument(input)};
  if (plan.silent) {
    argv.insert(argv.end(), {"-f", "lavfi"});
    if (video.seconds > 0) argv.insert(argv.end(), {"-t", std::to_string(video.seconds)});
    argv.insert(argv.end(), {"-i", "anullsrc=r=48000:cl=stereo"});
  }
  argv.insert(argv.end(), {"-map", "0:v:0", "-map", plan.silent ? "1:a:0" : "0:a:0"});
  if (plan.treatment == Treatment::kNewSound) {
    // The DVD muxer's settings that -target would give, without its picture size and rate,
    // which a copied picture cannot take.
    argv.insert(argv.end(), {"-c:v", "copy", "-f", "dvd", "-muxrate", "10080000",
                             "-packetsize", "2048"});
  } else {
    // ffmpeg has already turned a rotated picture upright; it is made progressive, scaled
    // whole into the frame, centred on black, and its pixels given the shape the frame's
    // aspect needs (so the stream states exactly 4:3 or 16:9).
    const bool wide = plan.aspect == Aspect::k16x9;
    const char* pixel = ntsc ? (wide ? "32/27" : "8/9") : (wide ? "64/45" : "16/15");
    const std::string fit = std::string(video.interlaced ? "yadif," : "") + "scale=" +
                            std::to_string(plan.pictureWidth) + ":" +
                            std::to_string(plan.pictureHeight) + ",pad=" +
                            std::to_string(plan.frameWidth) + ":" +
                            std::to_string(plan.frameHeight) + ":(ow-iw)/2:(oh-ih)/2,setsar=" +
                            pixel;
    argv.insert(argv.end(), {"-vf", fit, "-target", ntsc ? "ntsc-dvd" : "pal-dvd", "-b:v",
                             std::to_string(static_cast<long>(videoBitrate)), "-aspect",
                             AspectName(plan.aspect)});
  }
  // The sound resampled in step with its timestamps: else the AC-3 frames' times wander from
  // the packets' by a tick now and then, which dvdauthor reports as going backwards.
  argv.insert(argv.end(), {"-af", "aresample=async=1", "-c:a", "ac3", "-ar", "48000", "-ac",
                           std::to_string(plan.channels), "-b:a",
                           std::to_string(plan.soundBitrate), "-shortest", "-progress", "pipe:1",
                           "-nostats", output});
  Invocation run{argv};
  const double seconds = video.seconds;
  run.onLine = [&](const std::string& line) {
    // "out_time_us=1234567" every half second or so, "progress=end" at the end.
    if (line.rfind("out_time_us=", 0) == 0 && seconds > 0) {
      const double done = std::atof(line.c_str() + 12) / 1e6 / seconds;
      progress(done < 0 ? 0 : done > 1 ? 1 : done);
    } else if (line == "progress=end") {
      progress(1);
    }
  };
  const Outcome outcome = RunProgram(run);
  if (outcome.status != 0)
    throw ToolError(input, "cannot convert the video: " + LastLine(outcome.errors));
}

void MakeMenuStill(const std::string& ffmpeg, const std::string& picture,
                   const std::string& music, Standard standard, const std::string& output) {
  const bool ntsc = standard == Standard::kNtsc;
  std::vector<std::string> argv = {ffmpeg, "-nostdin", "-v", "error", "-y", "-loop", "1",
                                   "-i", FileArgument(picture)};
  if (music.empty()) {
    argv.insert(argv.end(), {"-f", "lavfi", "-i", "anullsrc=r=48000:cl=stereo", "-t", "1"});
  } else {
    argv.insert(argv.end(), {"-i", FileArgument(music), "-shortest"});
  }
  argv.insert(argv.end(), {"-map", "0:v", "-map", "1:a", "-target", ntsc ? "ntsc-dvd" : "pal-dvd",
                           "-aspect", "4:3", output});
  const Outcome outcome = RunProgram(Invocation{argv});
  if (outcome.status != 0)
    throw ToolError(music.empty() ? picture : music,
                    "cannot make the menu video: " + LastLine(outcome.errors));
}

}  // namespace menutool::author
