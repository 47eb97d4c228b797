#include "control/command_line.h"
#include "control/exit_status.h"

namespace zenqay {
namespace {

constexpr const char* kBash = R"sh(# bash completion of zenqayctl
_zenqayctl() {
  local word=${COMP_WORDS[COMP_CWORD]} command= words= i
  local -a file=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --file) file=(--file "${COMP_WORDS[++i]}") ;;
      -*) ;;
      *) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  COMPREPLY=()
  if [[ ${COMP_WORDS[COMP_CWORD - 1]} == @(--file|--token-file|--scratch|--out|--outcome|--keep|--directory) ]]; then
    COMPREPLY=($(compgen -f -- "$word"))
    return
  fi
  case $command in
    "") words="@COMMANDS@ --file --version --help" ;;
@CASES@  esac
  case $command in
    run | plan | submit | check | status | unlock | systemd) words+=" $(zenqayctl "${file[@]}" completion jobs 2>/dev/null)" ;;
    completion) words+=" bash zsh" ;;
    anonymise) COMPREPLY=($(compgen -f -- "$word")) ;;
    init) COMPREPLY=($(compgen -d -- "$word")) ;;
  esac
  COMPREPLY+=($(compgen -W "$words" -- "$word"))
}
complete -F _zenqayctl zenqayctl
)sh";

constexpr const char* kZsh = R"sh(#compdef zenqayctl
autoload -U +X bashcompinit && bashcompinit
)sh";

// zsh reads the file when it is first asked to complete, and takes this for the answer.
constexpr const char* kZshEnd = R"sh(if (( $#compstate )); then _bash_complete -F _zenqayctl; fi
)sh";

/// The options of a command; what is given by its place alone is left out.
Text OptionsOf(const std::vector<Text>& options) {
  Text words;
  for (const Text& option : options) {
    if (option.starts_with("--")) words += option + " ";
  }
  return words + "--help";
}

Text BashCompletion() {
  Text commands;
  Text cases;
  for (const auto& [command, options] : CommandsAndOptions()) {
    commands += (commands.empty() ? "" : " ") + command;
    cases += "    " + command + ") words=\"" + OptionsOf(options) + "\" ;;\n";
  }
  return Replaced(Replaced(kBash, "@COMMANDS@", commands), "@CASES@", cases);
}

}  // namespace

int WriteCompletion(const Text& shell, Surroundings& surroundings) {
  if (shell == "zsh") surroundings.out << kZsh;
  surroundings.out << BashCompletion();
  if (shell == "zsh") surroundings.out << kZshEnd;
  surroundings.out << std::flush;
  return kAllComplete;
}

}  // namespace zenqay
