// quern_manual: writes the manual and the completion of the command line, at build time.
//   quern_manual page COMMAND <TEXT   the page of a command ("quern trace"), its text on standard input
//   quern_manual bash, quern_manual zsh
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "tools/manual/completion.h"
#include "tools/manual/manual_page.h"

namespace {

const quern::command_form* find(const quern::command_form& tree, std::string_view name) {
  if (tree.name == name) return &tree;
  for (const quern::command_form& command : tree.commands)
    if (const quern::command_form* const found = find(command, name)) return found;
  return nullptr;
}

}  // namespace

int main(int count, char** words) {
  const quern::command_form tree = quern::command_tree();
  const std::string_view what = count > 1 ? words[1] : "";
  const quern::command_form* const command = what == "page" && count == 3 ? find(tree, words[2]) : nullptr;
  if (what == "bash")
    quern::print_bash_completion(std::cout, tree);
  else if (what == "zsh")
    quern::print_zsh_completion(std::cout, tree);
  else if (command != nullptr)
    quern::print_manual_page(std::cout, *command, std::cin);
  else
    return EXIT_FAILURE;
  return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
