// Completion for bash: the command line as tables in shell, and a function that looks up what is typed in them.
#include <ostream>

#include "tools/manual/completion.h"

namespace quern {
namespace {

void print_table(std::ostream& out, const char* table, const std::string& key, const std::vector<std::string>& words) {
  out << "  " << table << "['" << key << "']='";
  for (const std::string& word : words) out << word << " ";
  out << "'\n";
}

void print_tables(std::ostream& out, const command_form& command) {
  std::vector<std::string> commands, options;
  for (const command_form& one : command.commands) commands.push_back(one.last_name());
  for (const option_form& option : command.options)
    options.insert(options.end(), option.names.begin(), option.names.end());
  print_table(out, "commands", command.name, commands);
  print_table(out, "options", command.name, options);
  if (command.runs_program) print_table(out, "programs", command.name, {"yes"});
  for (const option_form& option : command.options) {
    if (option.value.empty()) continue;
    for (const std::string& name : option.names) print_table(out, "values", command.name + " " + name, option.choices);
  }
  for (const command_form& one : command.commands) print_tables(out, one);
}

// Goes through the words before the cursor: commands lead into their tables, an option's value is passed over, and from
// the program on that a command is to run all is left to the shell. "--option=value" is three words to it.
constexpr const char* lookup = R"(
  local current=${COMP_WORDS[COMP_CWORD]} command=quern option= key i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    key="$command ${COMP_WORDS[i]}"
    if [[ ${options[$key]+there} ]]; then
      command=$key
    elif [[ ${values[$key]+there} ]]; then
      [[ ${COMP_WORDS[i + 1]} != = ]] || ((++i))
      ((++i < COMP_CWORD)) || option=$key
    elif [[ ${programs[$command]+there} && ${COMP_WORDS[i]} != -?* || ${COMP_WORDS[i]} == -- ]]; then
      compopt -o default
      return
    fi
  done
  [[ $current != = ]] || current=
  local choices=${commands[$command]}
  [[ $current != -* ]] || choices=${options[$command]}
  [[ ! $option ]] || choices=${values[$option]}
  if [[ $choices ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$current")
  else
    compopt -o default
  fi
)";

}  // namespace

void print_bash_completion(std::ostream& out, const command_form& quern) {
  out << "# Completion of quern for bash.\n_quern() {\n  local -A commands options values programs\n";
  print_tables(out, quern);
  out << lookup << "}\ncomplete -F _quern quern\n";
}

}  // namespace quern
