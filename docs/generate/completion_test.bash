#!/usr/bin/env bash
# What the completion for bash offers: completion_test.bash ROOT.
set -u
cd "$1" || exit 2
# shellcheck source=/dev/null
source completion/proportions.bash

failed=0

# offers WANTED WORD...: the last word is completed to WANTED, words with blanks between them.
offers() {
  local wanted=$1
  shift
  COMP_WORDS=(proportions "$@")
  COMP_CWORD=$#
  COMPREPLY=()
  _proportions
  if [ "${COMPREPLY[*]}" != "$wanted" ]; then
    printf 'proportions %s: offers "%s", not "%s"\n' "$*" "${COMPREPLY[*]}" "$wanted"
    failed=1
  fi
}

offers 'describe' d
offers '--version' --v
offers 'de' --language d
offers 'methods' --language de m
offers '--format' run data.csv --form
offers 'markdown' run data.csv --format m
offers 'de' run data.csv --language d
offers 'WILSON_SCORE WILSON_SCORECC' counts 1/2 --intervals WI
offers 'MCNEMAR MCNEMARCC' counts 1/2 --tests MC
offers 'MCNEMAR MCNEMARCC' methods MC
offers 'README.md' run READ
offers 'README.md' run data.csv --schema READ
offers '' run data.csv --weight ''

exit $failed
