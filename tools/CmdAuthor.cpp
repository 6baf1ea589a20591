// The author command: from menu templates and videos to a DVD-Video folder (and on request a
// disc image). The pages become the disc's menus and the videos its titles; the work
// is staged in a sibling folder that replaces the output folder only when the disc is built,
// so a failure leaves no half-made disc behind. Everything the disc is made from (menu
// pictures, videos, the spumux and dvdauthor XML) stays in the output folder.
#include "tools/Preview.h"
#include "tools/ToolError.h"
#include "tools/author/Assignment.h"
#include "tools/author/AuthorOptions.h"
#include "tools/author/Capacity.h"
#include "tools/author/Colours.h"
#include "tools/author/DiscXml.h"
#include "tools/author/MenuPage.h"
#include "tools/author/Navigation.h"
#include "tools/author/Programs.h"
#include "tools/author/Video.h"
#include "tools/author/VideoPlan.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace menutool {
namespace {

namespace fs = std::filesystem;
using namespace author;

struct Tools {
  std::string ffmpeg, ffprobe, spumux, dvdauthor, genisoimage;
};

void WriteText(const fs::path& file, const std::string& text) {
  std::ofstream out(file);
  out << text;
  if (!out.flush()) throw ToolError(file.string(), "cannot write");
}

// Step lines on standard output, and a bar that redraws itself on a terminal.
class Progress {
 public:
  explicit Progress(int steps) : m_steps(steps), m_terminal(isatty(1)) {}
  void Step(const std::string& what) {
    std::cout << "[" << ++m_step << "/" << m_steps << "] " << what << std::endl;
  }
  void Bar(double done) {
    const int percent = static_cast<int>(done * 100);
    if (percent == m_percent || (!m_terminal && percent < 100)) return;
    m_percent = percent;
    std::string bar(static_cast<size_t>(percent * 40 / 100), '#');
    bar.resize(40, '.');
    std::cout << (m_terminal ? "\r" : "") << "      [" << bar << "] " << percent << "%"
              << (m_terminal && percent < 100 ? "" : "\n") << std::flush;
  }
  void StartBar() { m_percent = -1; }

 private:
  int m_steps;
  int m_step = 0;
  int m_percent = -1;
  bool m_terminal;
};

Rgb Chosen(const std::vector<unsigned>& given, Rgb otherwise) {
  return given.size() == 3 ? Rgb{given[0], given[1], given[2]} : otherwise;
}

// "an NTSC", "a PAL"
std::string WithArticle(Standard standard) {
  return std::string(standard == Standard::kNtsc ? "an " : "a ") + StandardName(standard);
}

std::string PageName(size_t p) { return "page" + std::to_string(p + 1); }

void RunIn(const fs::path& folder, Invocation run, const std::string& what, Standard standard) {
  run.folder = folder.string();
  run.environment.push_back(std::string("VIDEO_FORMAT=") + StandardName(standard));
  const Outcome outcome = RunProgram(run);
  if (outcome.status != 0) {
    std::ifstream log(run.log);
    std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
    throw ToolError(what, "failed: " + LastLine(run.log.empty() ? outcome.errors : text) +
                              (run.log.empty() ? "" : " (see " + run.log + ")"));
  }
}

}  // namespace

int RunAuthor(const AuthorOptions& options) {
  Tools tools;
  tools.ffmpeg = RequireProgram("ffmpeg", "ffmpeg");
  tools.ffprobe = RequireProgram("ffprobe", "ffmpeg");
  tools.spumux = RequireProgram("spumux", "dvdauthor");
  tools.dvdauthor = RequireProgram("dvdauthor", "dvdauthor");
  if (!options.iso.empty()) tools.genisoimage = RequireProgram("genisoimage", "genisoimage");

  const fs::path out = fs::absolute(options.out).lexically_normal();
  if (fs::exists(out) && !options.force)
    throw ToolError(options.out, "the output folder exists (--force replaces it)");

  Progress progress(5 + (options.iso.empty() ? 0 : 1));
  progress.Step("reading " + std::to_string(options.pages.size()) + " page(s) and " +
                std::to_string(options.videos.size()) + " video(s)");
  std::vector<MenuPage> pages;
  std::vector<PageButtons> numbered;
  for (const std::string& given : options.pages) {
    pages.push_back(ReadMenuPage(given));
    if (pages.back().standard != pages.front().standard)
      throw ToolError(given, WithArticle(pages.back().standard) + " page among " +
                                 StandardName(pages.front().standard) +
                                 " pages: a disc has one television standard");
    numbered.push_back({given, pages.back().NumberedIndexes()});
  }
  const Standard standard = pages.front().standard;
  const std::vector<Assignment> assignments = AssignVideos(numbered, options.videos);
  std::vector<VideoFacts> videos;
  std::vector<VideoPlan> plans;
  std::vector<TitleLoad> loads;
  for (const std::string& video : options.videos) {
    videos.push_back(ProbeVideo(tools.ffprobe, video));
    plans.push_back(PlanVideo(videos.back(), standard, AspectChoiceNamed(options.aspect)));
    loads.push_back(LoadOf(videos.back(), plans.back()));
  }
  const DiscFit fit = FitDisc(loads, options.dvd9 ? kDualLayer : kSingleLayer);
  if (!fit.fits) throw ToolError("", DescribeOverflow(fit));
  std::cout << "      " << DescribeFit(fit) << std::endl;

  // Built beside the output folder, which it replaces at the end.
  const fs::path stage = out.string() + ".partial";
  std::error_code error;
  fs::remove_all(stage, error);
  struct Cleanup {
    const fs::path& stage;
    bool keep = false;
    ~Cleanup() {
      std::error_code ignored;
      if (!keep) fs::remove_all(stage, ignored);
    }
  } cleanup{stage};
  for (const char* folder : {"menus", "videos"})
    if (fs::create_directories(stage / folder, error); error)
      throw ToolError(stage.string(), "cannot create: " + error.message());

  progress.Step("rendering the menus");
  std::vector<Rgb> frames;
  for (const MenuPage& page : pages)
    for (const PageButton& button : page.buttons)
      if (button.frame) frames.push_back(*button.frame);
  const ButtonColours defaults = ChooseColours(frames);
  const Rgb highlight = Chosen(options.highlight, defaults.highlight);
  const Rgb select = Chosen(options.select, defaults.select);
  const int height = standard == Standard::kNtsc ? 480 : 576;
  DiscFiles files;
  for (size_t p = 0; p < pages.size(); ++p) {
    const std::string name = PageName(p);
    const fs::path menus = stage / "menus";
    std::cout << "      " << pages[p].given << ": " << pages[p].buttons.size() << " buttons"
              << std::endl;
    RenderMenuPage(pages[p], (menus / (name + ".bmp")).string(),
                   (menus / (name + "-mask.bmp")).string());
    WritePreview((menus / (name + ".bmp")).string(), (menus / (name + "-mask.bmp")).string(),
                 (menus / (name + "-preview.png")).string());
    WriteButtonPicture((menus / (name + "-mask.bmp")).string(), highlight,
                       (menus / (name + "-highlight.png")).string());
    WriteButtonPicture((menus / (name + "-mask.bmp")).string(), select,
                       (menus / (name + "-select.png")).string());
    MakeMenuStill(tools.ffmpeg, (menus / (name + ".bmp")).string(), pages[p].music, standard,
                  (menus / (name + ".mpg")).string());
    std::vector<NavButton> nav;
    for (const PageButton& button : pages[p].buttons) nav.push_back(button.nav);
    const std::string xml = name + "-spumux.xml";
    WriteText(stage / xml, SpumuxXml(pages[p], DeriveLinks(nav), height,
                                     "menus/" + name + "-highlight.png",
                                     "menus/" + name + "-select.png"));
    Invocation spumux{{tools.spumux, "-m", "dvd", xml}};
    spumux.input = (menus / (name + ".mpg")).string();
    spumux.output = (menus / (name + "-menu.mpg")).string();
    spumux.log = (stage / "spumux.log").string();
    RunIn(stage, spumux, "spumux on " + pages[p].given, standard);
    files.menus.push_back("menus/" + name + "-menu.mpg");
  }

  progress.Step("preparing " + std::to_string(videos.size()) + " video(s)");
  for (size_t v = 0; v < videos.size(); ++v) {
    const std::string& given = options.videos[v];
    std::cout << "      " << DescribePlan(given, videos[v], plans[v]) << std::endl;
    TitleFile title{fs::absolute(given).string(), plans[v].aspect,
                    TitleSetKey(videos[v], plans[v])};
    if (plans[v].treatment != Treatment::kAsItIs) {
      title.file = "videos/title" + std::to_string(v + 1) + ".mpg";
      progress.StartBar();
      ConvertVideo(tools.ffmpeg, given, (stage / title.file).string(), videos[v], plans[v],
                   fit.videoBitrate, [&](double done) { progress.Bar(done); });
      progress.Bar(1);
    }
    files.titles.push_back(title);
  }

  progress.Step("building VIDEO_TS (dvdauthor)");
  WriteText(stage / "dvdauthor.xml", DvdauthorXml(pages, assignments, standard, files, "."));
  Invocation dvdauthor{{tools.dvdauthor, "-x", "dvdauthor.xml"}};
  dvdauthor.log = (stage / "dvdauthor.log").string();
  RunIn(stage, dvdauthor, "dvdauthor", standard);

  if (!options.iso.empty()) {
    // genisoimage, as it writes the UDF bridge and file order that DVD players expect
    // (-dvd-video); only the disc's folders go into the image, not the files it was made from.
    progress.Step("writing the disc image " + options.iso + " (genisoimage)");
    fs::create_directories(stage / "disc", error);
    fs::rename(stage / "VIDEO_TS", stage / "disc" / "VIDEO_TS", error);
    if (!error && fs::exists(stage / "AUDIO_TS"))
      fs::rename(stage / "AUDIO_TS", stage / "disc" / "AUDIO_TS", error);
    if (error) throw ToolError(stage.string(), "cannot arrange the disc image: " + error.message());
    Invocation image{{tools.genisoimage, "-quiet", "-dvd-video", "-V", "DVD_VIDEO", "-o",
                      fs::absolute(options.iso).string(), "disc"}};
    image.log = (stage / "genisoimage.log").string();
    RunIn(stage, image, "genisoimage", standard);
    fs::rename(stage / "disc" / "VIDEO_TS", stage / "VIDEO_TS", error);
    if (!error && fs::exists(stage / "disc" / "AUDIO_TS"))
      fs::rename(stage / "disc" / "AUDIO_TS", stage / "AUDIO_TS", error);
    fs::remove(stage / "disc", error);
  }

  progress.Step("finishing " + options.out);
  fs::remove_all(out, error);
  if (!error) fs::rename(stage, out, error);
  if (error) throw ToolError(options.out, "cannot replace the output folder: " + error.message());
  cleanup.keep = true;
  std::cout << "VIDEO_TS: " << (out / "VIDEO_TS").string() << "\n";
  for (size_t p = 0; p < pages.size(); ++p)
    std::cout << "preview of " << pages[p].given << ": "
              << (out / "menus" / (PageName(p) + "-preview.png")).string() << "\n";
  if (!options.iso.empty())
    std::cout << "disc image: " << fs::absolute(options.iso).string() << "\n";
  return kExitOk;
}

}  // namespace menutool
