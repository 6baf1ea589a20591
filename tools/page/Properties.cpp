// The rows of the property table and the small adapters that turn a CMenuTemplate getter or
// setter into a table entry. The adapters move values between the library's types (CString,
// int, unsigned int, tagPOINT, tagRECT) and the tool's Values, in argument order, so that a row
// only names the member functions; the few accessors that do not fit get a lambda.
#include "tools/page/Properties.h"

#include "tools/page/AsciiCase.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <tuple>

namespace menutool {
namespace {

// How one library argument type maps to consecutive Values.
template <class T>
struct Fields;

template <>
struct Fields<CString> {
  static void Put(const CString& v, Values* out) {
    out->push_back({0, std::string(v.GetString(), static_cast<std::size_t>(v.GetLength()))});
  }
  static CString Take(const Values& in, std::size_t* at) {
    const std::string& text = in[(*at)++].text;
    return CString(text.data(), static_cast<int>(text.size()));
  }
};

template <>
struct Fields<unsigned int> {
  static void Put(unsigned int v, Values* out) { out->push_back({v, {}}); }
  static unsigned int Take(const Values& in, std::size_t* at) {
    return static_cast<unsigned int>(in[(*at)++].number);
  }
};

template <>
struct Fields<int> {
  static void Put(int v, Values* out) { out->push_back({v, {}}); }
  static int Take(const Values& in, std::size_t* at) {
    return static_cast<int>(in[(*at)++].number);
  }
};

template <>
struct Fields<tagPOINT> {
  static void Put(const tagPOINT& p, Values* out) {
    out->push_back({p.x, {}});
    out->push_back({p.y, {}});
  }
  static tagPOINT Take(const Values& in, std::size_t* at) {
    tagPOINT p{};
    p.x = static_cast<int32_t>(in[(*at)++].number);
    p.y = static_cast<int32_t>(in[(*at)++].number);
    return p;
  }
};

// Rectangles cross the command line in the field order of tagRECT: left, top, right, bottom.
template <>
struct Fields<tagRECT> {
  static void Put(const tagRECT& r, Values* out) {
    for (int32_t edge : {r.left, r.top, r.right, r.bottom}) out->push_back({edge, {}});
  }
  static tagRECT Take(const Values& in, std::size_t* at) {
    tagRECT r{};
    // The fields are LONG: int on Linux, long on Windows (32 bits on both).
    for (auto* edge : {&r.left, &r.top, &r.right, &r.bottom})
      *edge = static_cast<int32_t>(in[(*at)++].number);
    return r;
  }
};

// Calls `call` with pointers to fresh values of T..., and on success appends them to `out`.
template <class... T, class Call>
bool GetInto(Values* out, Call call) {
  std::tuple<T...> held{};
  if (!std::apply([&](T&... v) { return call(&v...); }, held)) return false;
  std::apply([&](const T&... v) { (Fields<T>::Put(v, out), ...); }, held);
  return true;
}

// Takes T... from `in` in order (a braced list is evaluated left to right) and calls `call`.
template <class... T, class Call>
bool SetFrom(const Values& in, Call call) {
  std::size_t at = 0;
  std::tuple<T...> args{Fields<T>::Take(in, &at)...};
  return std::apply([&](const T&... v) { return call(v...); }, args);
}

// Page-wide accessors: int Get(T*...), int Set(T...).
template <class... T>
Getter PageGet(int (CMenuTemplate::*get)(T*...)) {
  return [get](CMenuTemplate& t, unsigned, Values* out) {
    return GetInto<T...>(out, [&](T*... v) { return (t.*get)(v...) != 0; });
  };
}
template <class... T>
Setter PageSet(int (CMenuTemplate::*set)(T...)) {
  return [set](CMenuTemplate& t, unsigned, const Values& in) {
    return SetFrom<T...>(in, [&](const T&... v) { return (t.*set)(v...) != 0; });
  };
}

// Navigation and per-button accessors: the selector or index comes first. (Named apart from
// the page-wide ones: SetMaxNumOfButtons(unsigned int) would fit both shapes.)
template <class... T>
Getter AtGet(int (CMenuTemplate::*get)(unsigned int, T*...)) {
  return [get](CMenuTemplate& t, unsigned where, Values* out) {
    return GetInto<T...>(out, [&](T*... v) { return (t.*get)(where, v...) != 0; });
  };
}
template <class... T>
Setter AtSet(int (CMenuTemplate::*set)(unsigned int, T...)) {
  return [set](CMenuTemplate& t, unsigned where, const Values& in) {
    return SetFrom<T...>(in, [&](const T&... v) { return (t.*set)(where, v...) != 0; });
  };
}

const std::vector<Slot> kText{{"TEXT", Kind::kText}};
const std::vector<Slot> kPicture{{"PICTURE", Kind::kText}};
const std::vector<Slot> kFontName{{"NAME", Kind::kText}};
const std::vector<Slot> kSize{{"SIZE", Kind::kUInt}};
const std::vector<Slot> kPoint{{"X", Kind::kInt}, {"Y", Kind::kInt}};
const std::vector<Slot> kRect{
    {"LEFT", Kind::kInt}, {"TOP", Kind::kInt}, {"RIGHT", Kind::kInt}, {"BOTTOM", Kind::kInt}};
const std::vector<Slot> kRgb{{"RED", Kind::kUInt}, {"GREEN", Kind::kUInt}, {"BLUE", Kind::kUInt}};
const std::vector<Slot> kStyle{
    {"ITALIC", Kind::kFlag}, {"BOLD", Kind::kFlag}, {"UNDERLINE", Kind::kFlag}};
const std::vector<Slot> kNavInfo{{"R", Kind::kUInt}, {"C", Kind::kUInt}};

std::vector<Property> BuildTable() {
  using C = CMenuTemplate;
  const Scope P = Scope::kPage, N = Scope::kNav, B = Scope::kButton;
  const std::string bk = "Background", nav = "{nav}Button", layout = "NumOfButton{n}";
  // clang-format off
  return {
    {"mode", P, {{"MODE", Kind::kMode}}, "television standard of the page: ntsc (720x480) or pal (720x576)",
     bk, {"NTSC"}, 80, false, PageGet(&C::GetTemplateMode), PageSet(&C::SetTemplateMode)},
    {"background", P, kPicture, "background picture", bk, {"BackgroundBmp"}, 1000, true,
     PageGet(&C::GetFileName), PageSet(&C::SetBkBMPFileName)},
    {"music", P, {{"FILE", Kind::kText}}, "background music", bk, {"BackgroundMusic"}, 1000, true,
     PageGet(&C::GetMusicFileName), PageSet(&C::SetMusicFileName)},
    {"buttons.max", P, {{"COUNT", Kind::kUInt}}, "most buttons the page may have",
     bk, {"MaximumNumberOfButton"}, 80, false, PageGet(&C::GetMaxNumOfButtons), PageSet(&C::SetMaxNumOfButtons)},
    {"buttons.current", P, {{"COUNT", Kind::kUInt}}, "current button count; selects the layout of every button.* property",
     bk, {"CurrentNumberOfButton"}, 80, false, PageGet(&C::GetCurrentNumOfButtons), PageSet(&C::SetCurrentNumOfButtons)},
    {"output", P, kPicture, "name of the rendered menu picture", bk, {"OutputBmp"}, 1000, false,
     PageGet(&C::GetOutputBMPFile), PageSet(&C::SetOutputBMPFile)},
    {"mask", P, kPicture, "name of the rendered mask picture", bk, {"OutMask"}, 1000, false,
     PageGet(&C::GetOutMaskFile), PageSet(&C::SetOutMaskFile)},

    {"title", P, kText, "page title", bk, {"BackgroundTitle"}, 80, false,
     PageGet(&C::GetBkTitle), PageSet(&C::SetBkTitle)},
    {"title.position", P, kPoint, "where the page title stands",
     bk, {"BackgroundTitlePosition_x", "BackgroundTitlePosition_y"}, 80, false,
     PageGet(&C::GetBkTitlePosition), PageSet(&C::SetBkTitlePosition)},
    {"title.font.name", P, kFontName, "font of the page title", bk, {"BackgroundTitleFont_Name"}, 1000, false,
     PageGet(&C::GetBkTitleFontName), PageSet(&C::SetBkTitleFontName)},
    {"title.font.size", P, kSize, "font size of the page title", bk, {"BackgroundTitleFont_Size"}, 80, false,
     PageGet(&C::GetBkTitleFontSize), PageSet(&C::SetBkTitleFontSize)},
    {"title.font.style", P, kStyle, "style flags of the page title",
     bk, {"BackgroundTitleFont_Italic", "BackgroundTitleFont_Bold", "BackgroundTitleFont_Underline"}, 80, false,
     PageGet(&C::GetBkTitleFontStyle), PageSet(&C::SetBkTitleFontStyle)},
    {"title.font.rgb", P, kRgb, "colour of the page title",
     bk, {"BackgroundTitleFont_R", "BackgroundTitleFont_G", "BackgroundTitleFont_B"}, 80, false,
     PageGet(&C::GetBkTitleFontRGB), PageSet(&C::SetBkTitleFontRGB)},

    {"nav.enabled", N, {{"ENABLED", Kind::kFlag}}, "whether the page shows the button",
     bk, {"Add{nav}Button"}, 80, false,
     [](C& t, unsigned nav, Values* out) {
       return GetInto<int>(out, [&](int* v) { return (nav == 0 ? t.GetAddPrevButton(v) : t.GetAddNextButton(v)) != 0; });
     },
     [](C& t, unsigned nav, const Values& in) {
       int add = in[0].number != 0;
       return (nav == 0 ? t.SetAddPrevButton(add) : t.SetAddNextButton(add)) != 0;
     }},
    {"nav.rect", N, kRect, "the button's rectangle on the page",
     nav, {"Button{nav}ButtonPosition_left", "Button{nav}ButtonPosition_right",
           "Button{nav}ButtonPosition_top", "Button{nav}ButtonPosition_bottom"}, 80, false,
     AtGet(&C::GetNavBtnPosition), AtSet(&C::SetNavBtnPosition)},
    {"nav.navinfo", N, kNavInfo, "navigation values r (row) and c (column)",
     nav, {"Button{nav}NavigationInfo_r", "Button{nav}NavigationInfo_c"}, 80, false,
     AtGet(&C::GetNavInfo), AtSet(&C::SetNavInfo)},
    {"nav.frame.size", N, kSize, "frame thickness", nav, {"Button{nav}FrameThickness"}, 80, false,
     AtGet(&C::GetNavBtnFrameSize), AtSet(&C::SetNavBtnFrameSize)},
    {"nav.frame.rgb", N, kRgb, "frame colour",
     nav, {"Button{nav}Frame_R", "Button{nav}Frame_G", "Button{nav}Frame_B"}, 80, false,
     AtGet(&C::GetNavBtnFrameRGB), AtSet(&C::SetNavBtnFrameRGB)},
    {"nav.frame.picture", N, kPicture, "frame picture", nav, {"Button{nav}FrameBmp"}, 1000, true,
     AtGet(&C::GetNavBtnFrameBMP), AtSet(&C::SetNavBtnFrameBMP)},
    {"nav.picture", N, kPicture, "button picture", nav, {"Button{nav}Bmp"}, 1000, true,
     AtGet(&C::GetNavBtnBMPFile), AtSet(&C::SetNavBtnBMPFile)},

    {"button.rect", B, kRect, "the button's rectangle on the page",
     layout, {"ButtonPosition{i}_left", "ButtonPosition{i}_right", "ButtonPosition{i}_top",
              "ButtonPosition{i}_bottom"}, 80, false,
     AtGet(&C::GetBtnPosition), AtSet(&C::SetBtnPosition)},
    {"button.frame.size", B, kSize, "frame thickness", layout, {"ButtonFrameThickness{i}"}, 80, false,
     AtGet(&C::GetBtnFrameSize), AtSet(&C::SetBtnFrameSize)},
    {"button.frame.rgb", B, kRgb, "frame colour",
     layout, {"ButtonFrame_R{i}", "ButtonFrame_G{i}", "ButtonFrame_B{i}"}, 80, false,
     AtGet(&C::GetBtnFrameRGB), AtSet(&C::SetBtnFrameRGB)},
    {"button.frame.picture", B, kPicture, "frame picture", layout, {"ButtonFrameBmp{i}"}, 80, true,
     AtGet(&C::GetBtnFrameBMP), AtSet(&C::SetBtnFrameBMP)},
    {"button.picture", B, kPicture, "button picture", layout, {"ButtonBmp{i}"}, 80, true,
     AtGet(&C::GetBtnBMP), AtSet(&C::SetBtnBMP)},
    {"button.navinfo", B, kNavInfo,
     "navigation values r (row) and c (column)",
     layout, {"ButtonNavigationInfo_r{i}", "ButtonNavigationInfo_c{i}"}, 80, false,
     AtGet(&C::GetBtnNavInfo), AtSet(&C::SetBtnNavInfo)},
    {"button.title", B, kText, "the button's title", layout, {"ButtonTitle{i}"}, 80, false,
     AtGet(&C::GetBtnTitle), AtSet(&C::SetBtnTitle)},
    {"button.title.position", B, kPoint, "where the button's title stands",
     layout, {"ButtonTitlePosition{i}_x", "ButtonTitlePosition{i}_y"}, 80, false,
     AtGet(&C::GetBtnTitlePosition), AtSet(&C::SetBtnTitlePosition)},
    {"button.title.font.name", B, kFontName, "font of the button's title", layout, {"ButtonTitleFont_Name{i}"}, 80, false,
     AtGet(&C::GetBtnTitleFontName), AtSet(&C::SetBtnTitleFontName)},
    {"button.title.font.size", B, kSize, "font size of the button's title", layout, {"ButtonTitleFont_Size{i}"}, 80, false,
     AtGet(&C::GetBtnTitleFontSize), AtSet(&C::SetBtnTitleFontSize)},
    {"button.title.font.style", B, kStyle, "style flags of the button's title",
     layout, {"ButtonTitleFont_Italic{i}", "ButtonTitleFont_Bold{i}", "ButtonTitleFont_Underline{i}"}, 80, false,
     AtGet(&C::GetBtnTitleFontStyle), AtSet(&C::SetBtnTitleFontStyle)},
    {"button.title.font.rgb", B, kRgb, "colour of the button's title",
     layout, {"ButtonTitleFont_R{i}", "ButtonTitleFont_G{i}", "ButtonTitleFont_B{i}"}, 80, false,
     AtGet(&C::GetBtnTitleFontRGB), AtSet(&C::SetBtnTitleFontRGB)},
  };
  // clang-format on
}

void ReplaceAll(std::string* text, const std::string& from, const std::string& to) {
  for (std::size_t at = text->find(from); at != std::string::npos;
       at = text->find(from, at + to.size()))
    text->replace(at, from.size(), to);
}

}  // namespace

std::string Property::ShortName() const {
  switch (scope) {
    case Scope::kNav: return name.substr(4);     // "nav."
    case Scope::kButton: return name.substr(7);  // "button."
    case Scope::kPage: break;
  }
  return name;
}

std::string Property::ValueNames() const {
  std::string names;
  for (const Slot& slot : slots) names += (names.empty() ? "" : " ") + std::string(slot.name);
  return names;
}

const std::vector<Property>& Properties() {
  static const std::vector<Property> table = BuildTable();
  return table;
}

const Property* FindProperty(const std::string& name) {
  const auto& table = Properties();
  auto it = std::find_if(table.begin(), table.end(),
                         [&](const Property& p) { return p.name == name; });
  return it == table.end() ? nullptr : &*it;
}

std::optional<std::string> Property::ReadBackWarning(const Values& values) const {
  if (!IsText() || values.empty()) return std::nullopt;
  const std::size_t kept = static_cast<std::size_t>(readBuffer - 1);
  if (values[0].text.size() <= kept) return std::nullopt;
  return "has " + std::to_string(values[0].text.size()) + " characters; only the first " +
         std::to_string(kept) + " are read back";
}

std::string PropertyList() {
  std::ostringstream out;
  out << "Properties of get and set (show prints them all):";
  const char* headings[] = {"Page", "Previous or next button (--nav prev|next)",
                            "Numbered button of the current layout (--button I)"};
  std::optional<Scope> scope;
  for (const Property& p : Properties()) {
    if (p.scope != scope) {
      scope = p.scope;
      out << "\n  " << headings[static_cast<int>(p.scope)] << ":\n";
    }
    std::string name = p.name, values = p.ValueNames();
    out << "    " << name << std::string(name.size() < 25 ? 25 - name.size() : 1, ' ') << values
        << std::string(values.size() < 23 ? 23 - values.size() : 1, ' ') << p.help << "\n";
  }
  out << "\nMODE is ntsc or pal; ENABLED, ITALIC, BOLD and UNDERLINE are yes or no; colours are\n"
         "0..255 (larger values draw as 255). Pictures are named relative to the template's folder.\n"
         "\nButtons are numbered 1..N in the layout of N buttons (buttons.current). Button I is kept\n"
         "under the library's index I+1: the library keeps the navigation values of indexes 0\n"
         "and 1 apart, where they cannot be read back, so the tool never uses them.\n";
  return out.str();
}

std::vector<KeyRef> KeysOf(const Property& property, unsigned where, long long layout) {
  // Indexes print as the library prints them, with "%d" (4294967295 names "...-1").
  const std::string nav = where == 0 ? "Prev" : "Next";
  const std::string index = std::to_string(static_cast<int32_t>(where));
  auto expand = [&](std::string text) {
    ReplaceAll(&text, "{nav}", nav);
    ReplaceAll(&text, "{i}", index);
    ReplaceAll(&text, "{n}", std::to_string(layout));
    return text;
  };
  std::vector<KeyRef> refs;
  for (const std::string& key : property.keys)
    refs.push_back({expand(property.section), expand(key)});
  return refs;
}

std::optional<unsigned> ButtonIndexOfKey(const std::string& key) {
  for (const Property& property : Properties()) {
    if (property.scope != Scope::kButton) continue;
    for (const std::string& pattern : property.keys) {
      std::size_t at = pattern.find("{i}");
      std::string before = pattern.substr(0, at), after = pattern.substr(at + 3);
      if (key.size() <= before.size() + after.size() ||
          !StartsIgnoringCase(key, before) ||
          !EqualIgnoringCase(std::string_view(key).substr(key.size() - after.size()), after))
        continue;
      std::string digits = key.substr(before.size(), key.size() - before.size() - after.size());
      errno = 0;
      char* end = nullptr;
      long long index = std::strtoll(digits.c_str(), &end, 10);
      // Only what "%d" prints: an optional minus, digits, no leading zeros.
      if (*end == '\0' && errno == 0 && std::to_string(index) == digits && index >= INT32_MIN &&
          index <= INT32_MAX)
        return static_cast<unsigned>(static_cast<int32_t>(index));
    }
  }
  return std::nullopt;
}

const char* NavName(unsigned selector) { return selector == 0 ? "prev" : "next"; }

}  // namespace menutool
