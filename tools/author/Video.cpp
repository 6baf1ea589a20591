// Probing and converting videos with ffprobe and ffmpeg (see Video.h).
#include "tools/author/Video.h"

#include "tools/ToolError.h"
#include "tools/author/Programs.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <set>

namespace menutool::author {
namespace {

using nlohmann::json;

json Probe(const std::string& ffprobe, const std::string& file, const char* what) {
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
  json facts = json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (facts.is_discarded()) throw ToolError(file, std::string("cannot read the ") + what);
  return facts;
}

std::string Field(const json& object, const char* key) {
  auto it = object.find(key);
  return it != object.end() && it->is_string() ? it->get<std::string>() : std::string();
}

// "30000/1001" as a number of frames a second.
double Rate(const std::string& fraction) {
  const size_t slash = fraction.find('/');
  const double top = std::atof(fraction.substr(0, slash).c_str());
  const double bottom = slash == std::string::npos ? 1 : std::atof(fraction.c_str() + slash + 1);
  return bottom > 0 ? top / bottom : 0;
}

bool Near(double a, double b) { return a > b - 0.01 && a < b + 0.01; }

std::optional<Standard> StandardOfRate(double fps) {
  if (Near(fps, 25) || Near(fps, 50)) return Standard::kPal;
  for (double ntsc : {30000.0 / 1001, 30.0, 60000.0 / 1001, 60.0, 24000.0 / 1001, 24.0})
    if (Near(fps, ntsc)) return Standard::kNtsc;
  return std::nullopt;
}

}  // namespace

const char* StandardName(Standard standard) {
  return standard == Standard::kNtsc ? "NTSC" : "PAL";
}

VideoFacts ProbeVideo(const std::string& ffprobe, const std::string& file) {
  const json facts = Probe(ffprobe, file, "video");
  VideoFacts video;
  video.seconds = std::atof(Field(facts.value("format", json::object()), "duration").c_str());
  const json streams = facts.value("streams", json::array());
  const json* picture = nullptr;
  bool soundFits = true;
  static const std::set<std::string> kDvdSound = {"ac3", "mp2", "pcm_dvd"};
  for (const json& stream : streams) {
    const std::string type = Field(stream, "codec_type");
    if (type == "video" && !picture) picture = &stream;
    if (type == "audio" && !kDvdSound.count(Field(stream, "codec_name"))) soundFits = false;
  }
  if (!picture) throw ToolError(file, "cannot read the video: it has no picture stream");
  const double fps = Rate(Field(*picture, "r_frame_rate"));
  video.standard = StandardOfRate(fps);
  const int width = picture->value("width", 0), height = picture->value("height", 0);
  const bool ntsc = height == 480 && Near(fps, 30000.0 / 1001);
  const bool pal = height == 576 && Near(fps, 25);
  video.dvdReady = Field(facts.value("format", json::object()), "format_name") == "mpeg" &&
                   Field(*picture, "codec_name") == "mpeg2video" && width == 720 &&
                   (ntsc || pal) && soundFits;
  return video;
}

double ProbeAudioSeconds(const std::string& ffprobe, const std::string& file) {
  const json facts = Probe(ffprobe, file, "music");
  return std::atof(Field(facts.value("format", json::object()), "duration").c_str());
}

void ConvertVideo(const std::string& ffmpeg, const std::string& input, const std::string& output,
                  Standard standard, double seconds,
                  const std::function<void(double)>& progress) {
  const bool ntsc = standard == Standard::kNtsc;
  const std::string height = ntsc ? "480" : "576";
  // Fits the picture into a 4:3 frame by its display aspect (dar), bars filling the rest; the
  // menus are 4:3 and a DVD titleset has one aspect for all of its videos.
  const std::string fit = "scale=w='if(gt(dar,4/3),720,trunc(720*dar*3/4/2)*2)':h='if(gt(dar,4/3),"
                          "trunc(" + height + "*4/3/dar/2)*2," + height + ")',pad=720:" + height +
                          ":(ow-iw)/2:(oh-ih)/2,setsar=" + (ntsc ? "8/9" : "16/15");
  Invocation run{{ffmpeg, "-nostdin", "-v", "error", "-y", "-i", FileArgument(input), "-vf", fit, "-target",
                  ntsc ? "ntsc-dvd" : "pal-dvd", "-aspect", "4:3", "-progress", "pipe:1",
                  "-nostats", output}};
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
