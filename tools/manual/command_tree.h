// The command line as the manual and the completion need it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quern {

struct option_form {
  std::vector<std::string> names;    // "-h", "--help"; empty for an argument by its place
  std::string value;                 // "FILE"; empty if it takes none
  std::vector<std::string> choices;  // the values there are, where the command line lists them
  std::string description;
};

struct command_form {
  std::string name;  // "quern trace dump"
  std::string description;
  std::vector<option_form> options, arguments;
  std::vector<command_form> commands;
  bool runs_program = false;  // what follows its options is a program and that program's arguments

  std::string last_name() const { return name.substr(name.rfind(' ') + 1); }
};

command_form command_tree();

}  // namespace quern
