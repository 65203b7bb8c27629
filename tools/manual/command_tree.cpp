// The command line as the manual and the completion need it, out of what parses it.
#include "tools/manual/command_tree.h"

#include "tools/commands.h"

namespace quern {
namespace {

// The parser's name of a type ends in the choices that were given with it: "FORMAT:{text,csv}".
option_form form_of(const CLI::Option& option) {
  option_form form;
  for (const std::string& name : option.get_snames()) form.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) form.names.push_back("--" + name);
  form.description = option.get_description();
  if (option.get_items_expected_max() == 0) return form;
  form.value = option.get_positional() ? option.get_name(true) : option.get_type_name();
  const std::size_t colon = form.value.find(":{");
  if (colon == std::string::npos) return form;
  form.choices = CLI::detail::split(form.value.substr(colon + 2, form.value.size() - colon - 3), ',');
  form.value.erase(colon);
  return form;
}

command_form form_of(const CLI::App& app, const std::string& name) {
  command_form form;
  form.name = name;
  form.description = app.get_description();
  form.runs_program = app.get_prefix_command();
  for (const CLI::Option* option : app.get_options())
    (option->get_positional() ? form.arguments : form.options).push_back(form_of(*option));
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
    form.commands.push_back(form_of(*command, name + " " + command->get_name()));
  return form;
}

}  // namespace

command_form command_tree() {
  CLI::App app;
  int status = 0;
  add_commands(app, status);
  return form_of(app, app.get_name());
}

}  // namespace quern
