#!/usr/bin/env zsh
# What the completion for zsh makes of a line: completion_test.zsh ROOT. The lines are typed into an
# interactive shell.
emulate -R zsh
cd $1 || exit 2
zmodload zsh/zpty
folder=$(mktemp -d)
trap 'zpty -d shell 2>/dev/null; rm -rf -- $folder' EXIT
cat >$folder/setup <<'SETUP'
PS1=
fpath=($PWD/completion $fpath)
autoload -Uz compinit && compinit -u -D
complete-and-tell() {
  zle complete-word
  print -r -- "$BUFFER" >>$answers
  BUFFER=
}
zle -N complete-and-tell
bindkey '^T' complete-and-tell
SETUP
zpty shell "TERM=dumb zsh -f -i"
zpty -w shell "answers=$folder/answers; source $folder/setup; print ready >$folder/ready"

# waits FILE LINES: until the file has so many lines; a shell that hangs is given two minutes.
waits() {
  repeat 12000; do
    [[ -e $1 && $(wc -l <$1) -ge $2 ]] && return
    zpty -r -t shell >/dev/null
    sleep 0.01
  done
  print -r -- "no answer of the shell"
  exit 1
}

failed=0
asked=0

# makes LINE RESULT: the line with its last word completed.
makes() {
  zpty -w -n shell "$1"$'\C-t'
  waits $folder/answers $((++asked))
  local made="$(tail -n 1 $folder/answers)"
  made=${made% }
  if [[ $made != $2 ]]; then
    print -r -- "$1: becomes \"$made\", not \"$2\""
    failed=1
  fi
}

waits $folder/ready 1
makes 'proportions d' 'proportions describe'
makes 'proportions --v' 'proportions --version'
makes 'proportions --language d' 'proportions --language de'
makes 'proportions --language de m' 'proportions --language de methods'
makes 'proportions run data.csv --form' 'proportions run data.csv --format'
makes 'proportions run data.csv --format m' 'proportions run data.csv --format markdown'
makes 'proportions run data.csv --language d' 'proportions run data.csv --language de'
makes 'proportions counts 1/2 --intervals WI' 'proportions counts 1/2 --intervals WILSON_SCORE'
makes 'proportions methods MC' 'proportions methods MCNEMAR'
makes 'proportions run READ' 'proportions run README.md'
makes 'proportions run data.csv --schema READ' 'proportions run data.csv --schema README.md'
makes 'proportions run data.csv --weight x' 'proportions run data.csv --weight x'
exit $failed
