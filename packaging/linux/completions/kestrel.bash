# Completion of kestrel for bash.
_kestrel() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  case $previous in
    --demo) COMPREPLY=($(compgen -d -- "$current")) ;;
    --archive) COMPREPLY=($(compgen -f -- "$current")) ;;
    --port-device) COMPREPLY=($(compgen -f -- "${current:-/dev/parport}")) ;;
    --scenario) COMPREPLY=($(compgen -W "running-machine bearing-fault overheating broadband-machine unsteady-machine calibrator at-rest" -- "$current")) ;;
    *)
      COMPREPLY=($(compgen -W "--simulate --scenario --quick-start --port-device --demo --archive --no-archive --help --version" \
        -- "$current")) ;;
  esac
}
complete -F _kestrel kestrel
