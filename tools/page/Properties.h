// The property table: every property of a menu page that CMenuTemplate has a getter and a
// setter for, described once by a short dotted name, its values, where the library keeps it,
// and how to call the library for it. get, set, show, check and the --help property list are
// all driven by this table; nothing else in the tool names a library accessor per property.
#ifndef TOLVEX_TOOLS_PROPERTIES_H
#define TOLVEX_TOOLS_PROPERTIES_H

#include "tools/page/Values.h"

#include <tolvex/MenuTemplate.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace menutool {

// What a property belongs to, and so what its `where` argument means.
enum class Scope {
  kPage,    // page-wide; `where` is ignored
  kNav,     // the previous (where 0) or next (where 1) button
  kButton,  // a numbered button of the current layout; `where` is the button index
};

// One value of a property: its name in messages and JSON, and its kind.
struct Slot {
  const char* name;
  Kind kind;
};

using Getter = std::function<bool(CMenuTemplate&, unsigned where, Values* out)>;
using Setter = std::function<bool(CMenuTemplate&, unsigned where, const Values& in)>;

struct Property {
  std::string name;  // "button.title.font.rgb"
  Scope scope;
  std::vector<Slot> slots;
  std::string help;
  // Where the library keeps the values, with "{nav}" standing for Prev/Next, "{i}" for the
  // button index and "{n}" for the layout's button count; `readBuffer` is the size of the
  // buffer the library reads each key with (80 or 1000 bytes, terminating zero included).
  std::string section;
  std::vector<std::string> keys;
  int readBuffer;
  bool inputFile;  // names a picture or sound the renderer reads, which check looks for
  Getter get;
  Setter set;

  // The name within its scope: "title.font.rgb" for "button.title.font.rgb".
  std::string ShortName() const;
  // "LEFT TOP RIGHT BOTTOM", for usage lines and messages.
  std::string ValueNames() const;
  // Holds texts the library reads with a fixed buffer (the titles, font names, file names).
  bool IsText() const { return slots.size() == 1 && slots[0].kind == Kind::kText; }
  // What of `values`, about to be written, will not read back as written: "has 100
  // characters; only the first 79 are read back" for a text longer than the read buffer.
  std::optional<std::string> ReadBackWarning(const Values& values) const;
};

const std::vector<Property>& Properties();
// The row named `name`, or nullptr.
const Property* FindProperty(const std::string& name);
// The table as text for --help: one line per property with its option, values and help.
std::string PropertyList();

// The section and key names of a property's values for the given button/selector and layout.
struct KeyRef {
  std::string section;
  std::string key;
};
std::vector<KeyRef> KeysOf(const Property& property, unsigned where, long long layout);

// The button index that a key of a layout section belongs to, when it is one of the keys of
// a button.* property ("ButtonPosition3_left" gives 3; the index printed with "%d").
std::optional<unsigned> ButtonIndexOfKey(const std::string& key);

// "prev"/"next" for a navigation selector.
const char* NavName(unsigned selector);

}  // namespace menutool

#endif  // TOLVEX_TOOLS_PROPERTIES_H
