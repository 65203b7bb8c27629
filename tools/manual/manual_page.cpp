// Manual pages in roff, by the macros of man(7).
#include "tools/manual/manual_page.h"

#include <istream>
#include <ostream>

namespace quern {
namespace {

// Text in which no character means something to roff.
std::string plain(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\')
      escaped += "\\e";
    else if (c == '-')
      escaped += "\\-";
    else if (c == '\'')
      escaped += "\\(aq";
    else
      escaped += c;
  }
  return escaped;
}

std::string joined(const std::vector<std::string>& parts, const std::string& between) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : between) + part;
  return text;
}

void print_entry(std::ostream& out, const option_form& form) {
  std::string names;
  for (const std::string& name : form.names) names += (names.empty() ? "\\fB" : ", \\fB") + plain(name) + "\\fR";
  if (!form.value.empty()) names += (names.empty() ? "\\fI" : " \\fI") + plain(form.value) + "\\fR";
  out << ".TP\n" << names << "\n" << plain(form.description);
  if (!form.choices.empty()) out << "\n(" << plain(joined(form.choices, ", ")) << ")";
  out << "\n";
}

void print_entries(std::ostream& out, const command_form& command) {
  for (const option_form& form : command.arguments) print_entry(out, form);
  for (const option_form& form : command.options) print_entry(out, form);
}

// A command two words deep ("quern trace") has its commands' options on its own page; "quern" has theirs elsewhere.
void print_options(std::ostream& out, const command_form& command) {
  const bool have_pages = command.name.find(' ') == std::string::npos;
  out << ".SH OPTIONS\n";
  print_entries(out, command);
  if (command.commands.empty()) return;
  if (have_pages) out << ".SH COMMANDS\n";
  for (const command_form& one : command.commands) {
    if (have_pages) {
      out << ".TP\n\\fB" << plain(one.name) << "\\fR(1)\n" << plain(one.description) << "\n";
    } else {
      out << ".SS " << plain(one.name) << "\n" << plain(one.description) << ".\n";
      print_entries(out, one);
    }
  }
}

std::string page_name(const command_form& command) {
  std::string name = command.name;
  for (char& c : name)
    if (c == ' ') c = '-';
  return name;
}

}  // namespace

void print_manual_page(std::ostream& out, const command_form& command, std::istream& text) {
  out << ".TH " << page_name(command) << " 1 \"\" \"quern " QUERN_VERSION "\" \"quern\"\n.SH NAME\n"
      << page_name(command) << " \\- " << plain(command.description) << "\n";
  for (std::string line; std::getline(text, line);) {
    if (line == "@OPTIONS@")
      print_options(out, command);
    else
      out << line << "\n";
  }
}

}  // namespace quern
