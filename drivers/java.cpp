// Java applet source ("JAVA", 701): the plot as a class whose paint method draws it with
// java.awt.Graphics. Coordinates are integer pixels from the top left corner; the
// pipeline converts them, the driver rounds them. The file compiles with javac as it
// stands:
//
//   // Plot of the Zorvel plotting library 10.6, 14.11.2023 22:13:20
//   import java.applet.Applet;
//   import java.awt.*;
//
//   @SuppressWarnings("removal")
//   public class zorvel extends Applet {
//     private static final long serialVersionUID = 1L;
//
//     public Dimension getPreferredSize () {
//       return new Dimension (854, 604);
//     }
//
//     public void paint (Graphics g) {
//     g.setColor (new Color (0,0,0));
//     g.drawLine (10,20,30,40);
//     part1 (g);
//     }
//
//     private void part1 (Graphics g) {        a method's code is limited to 64 KB: the
//     ...                                      drawing continues in a new method every
//     }                                        kStatementsPerMethod statements
//   }
//
// The class is named after the file (without directory and extension) when that is a
// Java name, as javac wants for a public class; otherwise it is a package-private class
// "ZorvelPlot", which compiles in a file of any name.

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "core/format.h"
#include "core/version.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

constexpr int kStatementsPerMethod = 2000;

constexpr std::string_view kJavaKeywords[] = {
    "abstract", "assert",     "boolean",   "break",     "byte",     "case",    "catch",
    "char",     "class",      "const",     "continue",  "default",  "do",      "double",
    "else",     "enum",       "extends",   "final",     "finally",  "float",   "for",
    "goto",     "if",         "implements", "import",   "instanceof", "int",   "interface",
    "long",     "native",     "new",       "package",   "private",  "protected", "public",
    "return",   "short",      "static",    "strictfp",  "super",    "switch",  "synchronized",
    "this",     "throw",      "throws",    "transient", "try",      "void",    "volatile",
    "while",    "true",       "false",     "null",      "var",      "record",  "yield",
    "_",
};

bool java_name(std::string_view s) {
  if (s.empty() || (s[0] >= '0' && s[0] <= '9')) {
    return false;
  }
  for (const char c : s) {
    const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                    c == '_' || c == '$';
    if (!ok) {
      return false;
    }
  }
  return std::find(std::begin(kJavaKeywords), std::end(kJavaKeywords), s) ==
         std::end(kJavaKeywords);
}

// The file's base name: without directory and extension.
std::string_view base_name(std::string_view file) {
  const std::size_t slash = file.find_last_of("/\\");
  if (slash != std::string_view::npos) {
    file.remove_prefix(slash + 1);
  }
  const std::size_t dot = file.rfind('.');
  return dot == std::string_view::npos ? file : file.substr(0, dot);
}

class JavaDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override {
    out_ = std::make_unique<TextWriter>(out, 0);
    width_ = pixels(setup.device_width);
    height_ = pixels(setup.device_height);

    std::string s = "// Plot of the Zorvel plotting library ";
    char num[kNumberBuffer];
    s.append(num, format_fixed(num, kVersion, 1));
    s += ", ";
    s += setup.stamp.date;
    s += ' ';
    s += setup.stamp.time;
    out_->line(s);
    out_->line("import java.applet.Applet;");
    out_->line("import java.awt.*;");
    out_->line("");
    const std::string_view base = base_name(setup.file_name);
    // Applets are deprecated in current Java; the class still compiles without noise.
    out_->line("@SuppressWarnings(\"removal\")");
    if (java_name(base)) {
      s = "public class ";
      s += base;
    } else {
      s = "class ZorvelPlot";
    }
    s += " extends Applet {";
    out_->line(s);
    out_->line("  private static final long serialVersionUID = 1L;");
    out_->line("");
    out_->line("  public Dimension getPreferredSize () {");
    s = "    return new Dimension (";
    s.append(num, format_int(num, width_ + 1));
    s += ", ";
    s.append(num, format_int(num, height_ + 1));
    s += ");";
    out_->line(s);
    out_->line("  }");
    out_->line("");
    out_->line("  public void paint (Graphics g) {");
    return !out_->failed();
  }

  void point(double x, double y, Pen pen) override {
    if (pen != Pen::Draw && pen != Pen::Move) {
      return;
    }
    const long long nx = device_int(x);
    const long long ny = device_int(y);
    if (pen == Pen::Draw) {
      const long long v[4] = {last_x_, last_y_, nx, ny};
      statement("  g.drawLine (", v, 4, ");\n");
    }
    last_x_ = nx;
    last_y_ = ny;
  }

  void colour(Rgb rgb, int /*value*/) override {
    const long long v[3] = {rgb.r, rgb.g, rgb.b};
    statement("  g.setColor (new Color (", v, 3, "));\n");
  }

  void erase() override {
    const long long v[4] = {0, 0, width_, height_};
    statement("  g.clearRect (", v, 4, ");\n");
  }

  bool close() override {
    out_->raw("  }\n}\n");
    return out_->finish();
  }

  bool failed() const override { return out_ && out_->failed(); }

 private:
  static long long pixels(double v) {
    return static_cast<long long>(std::clamp(v, 0.0, 2e9) + 0.5);
  }

  // One statement: `head`, the numbers separated by commas, `tail`.
  void statement(std::string_view head, const long long* v, int n, std::string_view tail) {
    if (statements_ == kStatementsPerMethod) {
      next_method();
    }
    ++statements_;
    char buf[8 * kNumberBuffer];
    char* p = buf;
    for (int i = 0; i < n; ++i) {
      if (i > 0) {
        *p++ = ',';
      }
      p = format_int(p, v[i]);
    }
    out_->raw(head);
    out_->raw({buf, static_cast<std::size_t>(p - buf)});
    out_->raw(tail);
  }

  // Ends the method in a call of the next one, which goes on drawing.
  void next_method() {
    ++method_;
    char num[kNumberBuffer];
    const std::string_view number(num, static_cast<std::size_t>(format_int(num, method_) - num));
    out_->raw("  part");
    out_->raw(number);
    out_->raw(" (g);\n  }\n\n  private void part");
    out_->raw(number);
    out_->raw(" (Graphics g) {\n");
    statements_ = 0;
  }

  std::unique_ptr<TextWriter> out_;
  long long width_ = 0;   // page in pixels
  long long height_ = 0;
  long long last_x_ = 0;  // last point, start of the next drawLine
  long long last_y_ = 0;
  int statements_ = 0;    // statements in the current method
  int method_ = 0;        // number of the current method (0: paint)
};

}  // namespace

std::unique_ptr<Driver> make_java_driver() { return std::make_unique<JavaDriver>(); }

}  // namespace zorvel
