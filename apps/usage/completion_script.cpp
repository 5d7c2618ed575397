// SPDX-License-Identifier: MIT
#include "usage/completion_script.h"

namespace usage {

namespace {

// PROGRAM stands for the program's name in all of them.
constexpr const char* kBash =
    R"(# Completion of PROGRAM in bash. To use it: source <(PROGRAM --completion)
_PROGRAM() {
  local words=() joined= line i
  # bash parts words at = and : too; they are put together again here.
  for ((i = 1; i <= COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      = | :) joined=yes ;;&
      *)
        if [[ -n $joined && ${#words[@]} -gt 0 ]]; then
          words[${#words[@]} - 1]+=${COMP_WORDS[i]}
        else
          words+=("${COMP_WORDS[i]}")
        fi
        ;;
    esac
    case ${COMP_WORDS[i]} in = | :) ;; *) joined= ;; esac
  done
  # Only what stands behind the last of them is replaced.
  local part=${COMP_WORDS[COMP_CWORD]}
  case $part in = | :) part= ;; esac
  local word=${words[${#words[@]} - 1]}
  local before=${word%"$part"} lines=()
  mapfile -t lines < <("${1/#\~/$HOME}" --complete "${words[@]}" 2>/dev/null)
  COMPREPLY=()
  for line in "${lines[@]:1}"; do
    line=${line%%$'\t'*}
    COMPREPLY+=("${line#"$before"}")
  done
  case ${lines[0]-} in
    files) mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$part") ;;
    folders) mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -d -- "$part") ;;
    *) return ;;
  esac
  compopt -o filenames 2>/dev/null
}
complete -F _PROGRAM PROGRAM
)";

constexpr const char* kZsh = R"(#compdef PROGRAM
# Completion of PROGRAM in zsh. To use it: source <(PROGRAM --completion=zsh)
_PROGRAM() {
  local -a lines names texts
  local line
  lines=("${(@f)$("${(Q)${~words[1]}}" --complete "${(@Q)words[2,CURRENT - 1]}" "$PREFIX" 2>/dev/null)}")
  for line in "${(@)lines[2,-1]}"; do
    names+=("${line%%$'\t'*}")
    texts+=("${line/$'\t'/  -- }")
  done
  local shown=1
  (( $#names )) && compadd -l -d texts -a names && shown=0
  case $lines[1] in
    files | folders)
      compset -P '--*='
      [[ $lines[1] == files ]] && _files && shown=0
      [[ $lines[1] == folders ]] && _files -/ && shown=0
      ;;
  esac
  return shown
}
if [[ $funcstack[1] == _PROGRAM ]]; then
  _PROGRAM "$@"
else
  compdef _PROGRAM PROGRAM
fi
)";

constexpr const char* kFish =
    R"(# Completion of PROGRAM in fish. To use it: PROGRAM --completion=fish | source
function __PROGRAM_complete
    set -l words (commandline -opc)
    set -l word (commandline -ct)
    set -l lines ($words[1] --complete $words[2..-1] "$word" 2>/dev/null)
    printf '%s\n' $lines[2..-1]
    set -l before (string match -r -- '^--[^=]*=' "$word")
    set -l path (string replace -r -- '^--[^=]*=' '' "$word")
    switch "$lines[1]"
        case files
            printf '%s\n' "$before"(__fish_complete_path "$path")
        case folders
            printf '%s\n' "$before"(__fish_complete_directories "$path")
    end
end
complete -c PROGRAM -f -a '(__PROGRAM_complete)'
)";

}  // namespace

const std::vector<std::string>& Shells() {
  static const std::vector<std::string> shells = {"bash", "zsh", "fish"};
  return shells;
}

std::string CompletionScript(const std::string& program, const std::string& shell) {
  const std::string placeholder = "PROGRAM";
  std::string script = shell == "zsh" ? kZsh : shell == "fish" ? kFish : kBash;
  for (std::size_t at = script.find(placeholder); at != std::string::npos;
       at = script.find(placeholder, at)) {
    script.replace(at, placeholder.size(), program);
  }
  return script;
}

}  // namespace usage
