// The author command: from menu templates and videos to a DVD-Video folder (and on request a
// disc image). The pages become the disc's menus and the videos its titles. Every page
// goes through check first, as render does. The work is staged beside the output folder and
// swapped in only when the disc is built, so a failure or a stop leaves no half-made disc and
// no user's file is touched (DiscOutput.h, Stop.h). Everything the disc is made from (menu
// pictures, videos, the spumux and dvdauthor XML) stays in the output folder. What spumux and
// dvdauthor report as a defect is said as a warning, and the exit status is 1 then.
#include "tools/cli/Commands.h"
#include "tools/preview/MaskAreas.h"
#include "tools/preview/Preview.h"
#include "tools/cli/ToolError.h"
#include "tools/author/Assignment.h"
#include "tools/author/AuthorOptions.h"
#include "tools/author/ButtonAreas.h"
#include "tools/author/Capacity.h"
#include "tools/author/Colours.h"
#include "tools/author/DiscOutput.h"
#include "tools/author/DiscXml.h"
#include "tools/author/MenuPage.h"
#include "tools/author/Navigation.h"
#include "tools/author/Programs.h"
#include "tools/author/Stop.h"
#include "tools/author/Video.h"
#include "tools/author/VideoPlan.h"

#include "platform/Os.h"
#include "tools/io/Reason.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

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
  explicit Progress(int steps) : m_steps(steps), m_terminal(tolvex::platform::os::StandardOutputIsTerminal()) {}
  void Step(const std::string& what) {
    StopIfAsked();
    std::cout << "[" << ++m_step << "/" << m_steps << "] " << what << std::endl;
  }
  void Bar(double done) {
    const int percent = static_cast<int>(done * 100);
    if (percent == m_percent || (!m_terminal && percent < 100) || StopSignal() != 0) return;
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

// The lines of a spumux or dvdauthor log that report a defect of the disc ("WARN:" or "ERR:"),
// the first 20 of them.
std::vector<std::string> Defects(const std::string& log) {
  std::ifstream in(log);
  std::vector<std::string> defects;
  for (std::string line; std::getline(in, line) && defects.size() < 20;)
    if (line.rfind("WARN:", 0) == 0 || line.rfind("ERR:", 0) == 0) defects.push_back(line);
  return defects;
}

// Runs a program of the disc in `folder`, with its standard error in `log`. A failure throws
// with the log's last line; defects it reports are added to `warnings` as "<what>: <line>".
void RunIn(const fs::path& folder, Invocation run, const std::string& what, Standard standard,
           std::vector<std::string>* warnings) {
  run.folder = folder.string();
  run.environment.push_back(std::string("VIDEO_FORMAT=") + StandardName(standard));
  const Outcome outcome = RunProgram(run);
  if (outcome.status != 0) {
    std::ifstream log(run.log);
    std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
    throw ToolError(what, "failed: " + LastLine(run.log.empty() ? outcome.errors : text));
  }
  if (!run.log.empty())
    for (const std::string& defect : Defects(run.log)) warnings->push_back(what + ": " + defect);
}

// Refuses, before any program opens it, a file that is not a plain file: a FIFO would hang the
// program reading it, a device would be read without end.
void RequirePlainFile(const std::string& file, const std::string& what) {
  namespace os = tolvex::platform::os;
  os::PathInfo info;
  const auto looked = os::LookAt(file, &info);
  if (!looked.ok()) throw ToolError(file, "cannot read the " + what + ": " + Reason(looked));
  if (info.kind != os::PathKind::kFile)
    throw ToolError(file, "is not a plain file (a folder, FIFO or device), so it cannot be the " +
                              what);
}

// Check's findings on the prepared copy of a page, named after the page as the user gave it.
// Returns the number of errors; all findings are printed.
int CheckPage(const MenuPage& page) {
  std::ostringstream findings;
  int errors = 0;
  CheckScope scope;
  scope.layoutInUseOnly = true;  // the only one rendered
  scope.name = page.given;
  CheckTemplate(page.copy, findings, &errors, scope);
  std::istringstream lines(findings.str());
  for (std::string line; std::getline(lines, line);) std::cout << "      " << line << "\n";
  return errors;
}

}  // namespace

const char* const kAuthorSummary = "make a DVD-Video folder from menu pages and videos";

int RunAuthor(const AuthorOptions& options) {
  StopOnSignals stops;
  Tools tools;
  tools.ffmpeg = RequireProgram("ffmpeg", "ffmpeg");
  tools.ffprobe = RequireProgram("ffprobe", "ffmpeg");
  tools.spumux = RequireProgram("spumux", "dvdauthor");
  tools.dvdauthor = RequireProgram("dvdauthor", "dvdauthor");
  if (!options.iso.empty()) tools.genisoimage = RequireProgram("genisoimage", "genisoimage");

  std::vector<std::string> inputs = options.pages;
  for (const std::string& page : options.pages) RequirePlainFile(page, "menu page");
  for (const std::string& video : options.videos) {
    RequirePlainFile(video, "video");
    inputs.push_back(video);
  }
  DiscOutput output(options.out, options.iso, inputs, options.force);
  const fs::path stage = output.stage();
  for (const std::string& note : output.notes()) std::cout << note << "\n";
  std::error_code error;
  for (const char* folder : {"menus", "videos"})
    if (fs::create_directories(stage / folder, error); error)
      throw ToolError(stage.string(), "cannot create: " + error.message());

  Progress progress(6 + (options.iso.empty() ? 0 : 1));
  progress.Step("reading and checking " + std::to_string(options.pages.size()) + " page(s)");
  const bool linked = options.pages.size() > 1;
  std::vector<MenuPage> pages;
  std::vector<PageButtons> numbered;
  int errors = 0;
  for (size_t p = 0; p < options.pages.size(); ++p) {
    const std::string& given = options.pages[p];
    pages.push_back(PrepareMenuPage(given, (stage / "menus" / (PageName(p) + ".ini")).string(),
                                    linked));
    const MenuPage& page = pages.back();
    if (page.standard != pages.front().standard)
      throw ToolError(given, WithArticle(page.standard) + " page among " +
                                 StandardName(pages.front().standard) +
                                 " pages: a disc has one television standard");
    std::cout << "      " << given << ": " << page.buttons.size() << " buttons"
              << (page.note.empty() ? "" : "; " + page.note) << std::endl;
    if (!page.music.empty()) RequirePlainFile(page.music, "music of " + given);
    errors += CheckPage(page);
    numbered.push_back({given, page.NumberedIndexes()});
  }
  if (errors && !options.ignoreCheck)
    throw ToolError("", std::to_string(errors) + (errors == 1 ? " error" : " errors") +
                            " found by check; no disc made (--ignore-check makes it all the same)");
  const Standard standard = pages.front().standard;
  const std::vector<Assignment> assignments = AssignVideos(numbered, options.videos);

  progress.Step("reading " + std::to_string(options.videos.size()) + " video(s)");
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

  progress.Step("rendering the menus");
  std::vector<Rgb> frames;
  for (const MenuPage& page : pages)
    for (const PageButton& button : page.buttons)
      if (button.frame) frames.push_back(*button.frame);
  const ButtonColours defaults = ChooseColours(frames);
  const Rgb highlight = Chosen(options.highlight, defaults.highlight);
  const Rgb select = Chosen(options.select, defaults.select);
  std::vector<std::string> warnings;
  DiscFiles files;
  for (size_t p = 0; p < pages.size(); ++p) {
    const std::string name = PageName(p);
    const fs::path menus = stage / "menus";
    RenderMenuPage(pages[p]);
    // The areas a player highlights hold the whole band the mask marks round each button. The
    // preview shows the page as it opens, with its first button highlighted.
    std::vector<tagRECT> rects;
    std::vector<NavButton> nav;
    for (const PageButton& button : pages[p].buttons) {
      rects.push_back(button.nav.rect);
      nav.push_back(button.nav);
    }
    const MaskAreas mask = ReadMaskAreas(pages[p].mask);
    const std::vector<PixelBox> areas = ButtonAreas(rects, mask);
    const PlayerView shown{areas, 0, static_cast<unsigned char>(highlight.r),
                           static_cast<unsigned char>(highlight.g),
                           static_cast<unsigned char>(highlight.b)};
    WritePreview(pages[p].picture, pages[p].mask, (menus / (name + "-preview.png")).string(),
                 &shown);
    WriteButtonPicture(mask, highlight, (menus / (name + "-highlight.png")).string());
    WriteButtonPicture(mask, select, (menus / (name + "-select.png")).string());
    MakeMenuStill(tools.ffmpeg, pages[p].picture, pages[p].music, standard,
                  (menus / (name + ".mpg")).string());
    const std::string xml = name + "-spumux.xml";
    WriteText(stage / xml, SpumuxXml(areas, DeriveLinks(nav), "menus/" + name + "-highlight.png",
                                     "menus/" + name + "-select.png"));
    Invocation spumux{{tools.spumux, "-m", "dvd", xml}};
    spumux.input = (menus / (name + ".mpg")).string();
    spumux.output = (menus / (name + "-menu.mpg")).string();
    spumux.log = (stage / "spumux.log").string();
    RunIn(stage, spumux, "spumux on " + pages[p].given, standard, &warnings);
    files.menus.push_back("menus/" + name + "-menu.mpg");
  }

  progress.Step("preparing " + std::to_string(videos.size()) + " video(s)");
  for (size_t v = 0; v < videos.size(); ++v) {
    const std::string& given = options.videos[v];
    std::cout << "      " << DescribePlan(given, videos[v], plans[v]) << std::endl;
    // dvdauthor reads a name ending in '|' as a command, so every title reaches it by a name
    // of the disc's own: the converted file, or a link to the one used as it is.
    const std::string staged = "videos/title" + std::to_string(v + 1) + ".mpg";
    TitleFile title{staged, plans[v].aspect, TitleSetKey(videos[v], plans[v])};
    if (plans[v].treatment == Treatment::kAsItIs) {
      fs::create_symlink(fs::absolute(given), stage / staged, error);
      if (error) throw ToolError(given, "cannot link the video: " + error.message());
    } else {
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
  RunIn(stage, dvdauthor, "dvdauthor", standard, &warnings);

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
                      output.stagedIso().string(), "disc"}};
    image.log = (stage / "genisoimage.log").string();
    RunIn(stage, image, "genisoimage", standard, &warnings);
    fs::rename(stage / "disc" / "VIDEO_TS", stage / "VIDEO_TS", error);
    if (!error && fs::exists(stage / "disc" / "AUDIO_TS"))
      fs::rename(stage / "disc" / "AUDIO_TS", stage / "AUDIO_TS", error);
    fs::remove(stage / "disc", error);
  }

  progress.Step("finishing " + options.out);
  output.Finish();
  const fs::path& out = output.out();
  std::cout << "VIDEO_TS: " << (out / "VIDEO_TS").string() << "\n";
  for (size_t p = 0; p < pages.size(); ++p)
    std::cout << "preview of " << pages[p].given << ": "
              << (out / "menus" / (PageName(p) + "-preview.png")).string() << "\n";
  if (!options.iso.empty()) std::cout << "disc image: " << output.iso().string() << "\n";
  for (const std::string& warning : warnings) std::cout << "warning: " << warning << "\n";
  return warnings.empty() ? kExitOk : kExitMissing;
}

}  // namespace menutool
