// Completion for zsh: a function for each command, which hands the specifications of its options to _arguments.
#include <ostream>

#include "tools/manual/completion.h"

namespace quern {
namespace {

// Text between the apostrophes of an argument of _arguments, without the characters that mean something there.
std::string plain(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'')
      escaped += "'\\''";
    else if (c == '[' || c == ']' || c == ':')
      (escaped += '\\') += c;
    else
      escaped += c;
  }
  return escaped;
}

std::string function_name(const command_form& command) {
  std::string name = "_" + command.name;
  for (char& c : name)
    if (c == ' ') c = '_';
  return name;
}

// ":FILE:_files", ":FORMAT:(text csv)", or nothing for an option without a value.
std::string value_of(const option_form& option) {
  if (option.value.empty()) return {};
  std::string choices;
  for (const std::string& choice : option.choices) choices += (choices.empty() ? "" : " ") + choice;
  const std::string action = !choices.empty() ? "(" + choices + ")" : option.value == "DIR" ? "_files -/" : "_files";
  return ":" + option.value + ":" + action;
}

void print_option(std::ostream& out, const option_form& option) {
  for (const std::string& name : option.names) {
    const bool joins_value = !option.value.empty() && name.starts_with("--");
    out << " \\\n    '" << name << (joins_value ? "=" : "") << "[" << plain(option.description) << "]"
        << value_of(option) << "'";
  }
}

void print_function(std::ostream& out, const command_form& command) {
  for (const command_form& one : command.commands) print_function(out, one);
  out << "\n" << function_name(command) << "() {\n";
  if (!command.commands.empty()) {
    out << "  local line state\n  local -a commands=(";
    for (const command_form& one : command.commands)
      out << "\n    '" << one.last_name() << ":" << plain(one.description) << "'";
    out << ")\n";
  }
  out << "  _arguments";
  if (!command.commands.empty()) out << " -C";
  for (const option_form& option : command.options) print_option(out, option);
  if (!command.commands.empty()) {
    out << " \\\n    '1:command:->command' '*::argument:->arguments'\n"
        << "  case $state in\n    command) _describe command commands ;;\n"
        << "    arguments) (( $+functions[" << function_name(command) << "_$words[1]] )) && " << function_name(command)
        << "_$words[1] ;;\n  esac\n}\n";
    return;
  }
  if (command.runs_program)
    out << " \\\n    '(-)1:program:_command_names -e' '*::argument:_normal'";
  else if (!command.arguments.empty())
    out << " \\\n    '*" << value_of(command.arguments.front()) << "'";
  out << "\n}\n";
}

}  // namespace

void print_zsh_completion(std::ostream& out, const command_form& quern) {
  out << "#compdef quern\n# Completion of quern for zsh.\n";
  print_function(out, quern);
  out << "\n_quern \"$@\"\n";
}

}  // namespace quern
