# Completion of proportions for bash. Made by script/docs.
# shellcheck shell=bash
_proportions() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=''
  local i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      run|counts|describe|methods) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  case $command in
    run)
      case $before in
        --schema|-f|--file|--diagnostics-file|-o|--output) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
        --weight|--split|--locale|--threads|--timeout|--memory|-c|--command|--diagnostics|--bootstrap|--seed|--bootstrap-level|--imputation) COMPREPLY=(); return ;;
        --split-layout) mapfile -t COMPREPLY < <(compgen -W "rows tables" -- "$word"); return ;;
        --bootstrap-interval) mapfile -t COMPREPLY < <(compgen -W "percentile bca" -- "$word"); return ;;
        --pooling-df) mapfile -t COMPREPLY < <(compgen -W "barnard-rubin rubin" -- "$word"); return ;;
        --format) mapfile -t COMPREPLY < <(compgen -W "text json csv html markdown latex xlsx" -- "$word"); return ;;
        --language) mapfile -t COMPREPLY < <(compgen -W "en de es fr ja zh-CN" -- "$word"); return ;;
        --color) mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$word"); return ;;
      esac
      case $word in
        -*) mapfile -t COMPREPLY < <(compgen -W "-h --help --schema --weight --split --locale --threads --timeout --memory -c --command -f --file --split-layout --case-by-case --diagnostics --diagnostics-file --bootstrap --seed --bootstrap-interval --bootstrap-level --imputation --pooling-df --format -o --output --language --color --sentences --quiet" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
      esac ;;
    counts)
      case $before in
        --paired|--test-value|--level) COMPREPLY=(); return ;;
        --tests) mapfile -t COMPREPLY < <(compgen -W "EXACT HAUCK_ANDERSON MCNEMAR MCNEMARCC MIDP SCORE SCORECC WALD WALDCC WALDH0 WALDH0CC ALL NONE" -- "$word"); return ;;
        --intervals) mapfile -t COMPREPLY < <(compgen -W "AGRESTI_CAFFO AGRESTI_COULL AGRESTI_MIN ANSCOMBE BONETT_PRICE BROWN_LI_JEFFREYS CLOPPER_PEARSON HAUCK_ANDERSON JEFFREYS LOGIT NEWCOMBE NEWCOMBECC WALD WALDCC WILSON_SCORE WILSON_SCORECC ALL NONE" -- "$word"); return ;;
        --format) mapfile -t COMPREPLY < <(compgen -W "text json csv html markdown latex xlsx" -- "$word"); return ;;
        -o|--output) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
        --language) mapfile -t COMPREPLY < <(compgen -W "en de es fr ja zh-CN" -- "$word"); return ;;
        --color) mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$word"); return ;;
      esac
      case $word in
        -*) mapfile -t COMPREPLY < <(compgen -W "-h --help --paired --test-value --level --tests --intervals --format -o --output --language --color --sentences --quiet" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
      esac ;;
    describe)
      case $before in
        --schema) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
        --weight|--split|--locale|--threads|--timeout|--memory) COMPREPLY=(); return ;;
        --language) mapfile -t COMPREPLY < <(compgen -W "en de es fr ja zh-CN" -- "$word"); return ;;
      esac
      case $word in
        -*) mapfile -t COMPREPLY < <(compgen -W "-h --help --schema --weight --split --locale --threads --timeout --memory --language" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
      esac ;;
    methods)
      case $before in
        --language) mapfile -t COMPREPLY < <(compgen -W "en de es fr ja zh-CN" -- "$word"); return ;;
      esac
      case $word in
        -*) mapfile -t COMPREPLY < <(compgen -W "-h --help --language" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -W "AGRESTI_CAFFO AGRESTI_COULL AGRESTI_MIN ANSCOMBE BONETT_PRICE BROWN_LI_JEFFREYS CLOPPER_PEARSON EXACT HAUCK_ANDERSON JEFFREYS LOGIT MCNEMAR MCNEMARCC MIDP NEWCOMBE NEWCOMBECC SCORE SCORECC WALD WALDCC WALDH0 WALDH0CC WILSON_SCORE WILSON_SCORECC" -- "$word") ;;
      esac ;;
    *)
      case $before in
        --language) mapfile -t COMPREPLY < <(compgen -W "en de es fr ja zh-CN" -- "$word"); return ;;
        --module) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
      esac
      mapfile -t COMPREPLY < <(compgen -W 'run counts describe methods -h --help --version --language --module' -- "$word") ;;
  esac
}
complete -o filenames -F _proportions proportions
