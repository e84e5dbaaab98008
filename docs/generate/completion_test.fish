#!/usr/bin/env fish
# What the completion for fish offers: completion_test.fish ROOT.
cd $argv[1]; or exit 2
source completion/proportions.fish

set failed 0

# offers LINE WANTED...: what the line's last word can become.
function offers
    set -l offered (complete -C $argv[1] | string replace -r '\t.*' '')
    if test "$offered" != "$argv[2..]"
        printf '%s: offers "%s", not "%s"\n' $argv[1] "$offered" "$argv[2..]"
        set -g failed 1
    end
end

offers 'proportions d' describe
offers 'proportions --v' --version
offers 'proportions --language d' de
offers 'proportions run data.csv --form' --format
offers 'proportions run data.csv --format m' markdown
offers 'proportions run data.csv --language d' de
offers 'proportions counts 1/2 --intervals WI' WILSON_SCORE WILSON_SCORECC
offers 'proportions counts 1/2 --tests MC' MCNEMAR MCNEMARCC
offers 'proportions methods MC' MCNEMAR MCNEMARCC
offers 'proportions run READ' README.md
offers 'proportions run data.csv --schema READ' README.md
offers 'proportions run data.csv --weight x'
exit $failed
