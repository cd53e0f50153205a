# Completion of kestrel-cli for bash.
_kestrel_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local global="--simulate --scenario --adapter --parallel --port-device --archive --no-archive --json --version --help"
  local commands="capture registers bands command record status adapters archive trend baseline setup report monitor wide"
  local remarks="--machine --point --orientation --rpm --note --tag"
  local words="" word command="" action=""
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      capture | registers | bands | command | record | status | adapters | archive | trend | baseline | setup | report | monitor | wide)
        [ -n "$command" ] || command=$word ;;
      list | read | write | dump | clear | load | save | show | note | delete | check | rescue | export | import | diff | restore | journal) action=$word ;;
    esac
  done
  case $previous in
    --mode) words="manual timer time" ;;
    --range) words="1 5 20 70" ;;
    --option) words="0 1 2 3" ;;
    --window) words="rectangular hanning flattop" ;;
    --quantity)
      words="g velocity displacement density"
      [ "$command" != wide ] || words="density amplitude velocity displacement" ;;
    --from) [ "$command" != wide ] || words="last" ;;
    --wide)
      words="any"
      [ "$action" != export ] || words="last" ;;
    --amplitude) words="peak rms pp" ;;
    --adapter) words="Ezusb-0 Ezusb-1 Ezusb-2 Ezusb-3" ;;
    --scenario) words="running-machine bearing-fault overheating broadband-machine unsteady-machine calibrator at-rest" ;;
    --format) words="uff58 uff58b wav mat csv json" ;;
    --axis) words="X Y Z" ;;
    --paper) words="a4 letter" ;;
    --kind) words="spectrum time" ;;
    --plots) COMPREPLY=($(compgen -d -- "$current")); return ;;
    --percentile) words="95 99" ;;
    --level) words="peak rms" ;;
    --archive | --into | --bands | --save | --evidence | --file | --csv) COMPREPLY=($(compgen -f -- "$current")); return ;;
    --port-device) COMPREPLY=($(compgen -f -- "${current:-/dev/parport}")); return ;;
    --out) COMPREPLY=($(compgen -d -- "$current")); return ;;
    *)
      case $command:$action in
        :) words="$global $commands" ;;
        capture:) words="--mode --averages --range --option --window --count --interval --out --name --old-data --data --fast --peaks --levels --quantity --amplitude $remarks --help" ;;
        registers:) words="list read write dump" ;;
        registers:dump) words="--out" ;;
        bands:) words="read write clear load save" ;;
        bands:write | bands:load | bands:save)
          COMPREPLY=($(compgen -f -- "$current")); return ;;
        record:) words="--time --data --fast --peaks --levels --quantity --amplitude $remarks --help" ;;
        archive:) words="list show note delete check rescue export import journal" ;;
        archive:list) words="--from --until --machine --point --bench --tag --text --kind --option --wide --alarm --deleted --limit --help" ;;
        archive:journal) words="--from --until --bench --sensor --open --limit --help" ;;
        archive:show) words="--data --help" ;;
        archive:note) words="$remarks --help" ;;
        archive:delete) words="--undo --for-good --help" ;;
        trend:) words="rms peak temperature supply --axis --low --high --near --within --from --until --machine --point --bench --tag --text --kind --option --wide --alarm --deleted --help" ;;
        baseline:) words="--good-from --good-until --good-tag --good-text --good-id --good-every --bad-from --bad-until --bad-tag --bad-text --bad-id --bad-every --machine --point --bench --option --window --range --averages --sigma --percentile --at-least --fault-above --level --m --n --hysteresis --bands --sensor-bands --present --save --evidence --write --help" ;;
        report:) words="--out --plots --svg --png --title --paper --quantity --amplitude --help" ;;
        archive:export) words="--wide --format --out --help" ;;
        archive:import) words="--time --option --range --window $remarks --help"
          COMPREPLY=($(compgen -f -- "$current")); [[ $current == -* ]] || return ;;
        wide:*) words="--fast --range --window --averages --options --quantity --limit --lines --data --csv --from --list $remarks --help" ;;
        setup:) words="save diff restore list show delete export import" ;;
        monitor:) words="--check --end-with-input --from-sensor --bench --sensor --help"
          COMPREPLY=($(compgen -f -- "$current")); [[ $current == -* ]] || return ;;
        setup:save) words="--file --replace --help" ;;
        setup:diff | setup:show) words="--file --help" ;;
        setup:restore) words="--file --flash --keep-nulls --help" ;;
        setup:export | setup:import) words="--replace --name --help"
          COMPREPLY=($(compgen -f -- "$current")); [[ $current == -* ]] || return ;;
        archive:rescue) words="--into --help" ;;
        status:) words="--clear --help" ;;
      esac ;;
  esac
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -F _kestrel_cli kestrel-cli
