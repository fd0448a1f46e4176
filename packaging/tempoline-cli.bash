# Completion of tempoline-cli for bash: commands, the options of the command, and what stands for their values.

_tempoline_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= options= word
  # "--name=value" comes in three words.
  [ "$before" = "=" ] && before=${COMP_WORDS[COMP_CWORD - 2]}
  [ "$current" = "=" ] && current=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      info | list | alarms | add | edit | move | copy | delete | compact | check | new | share | contacts | participants | register | export | report | import) command=$word && break ;;
    esac
  done
  local password="--password --password-file" record="--offset"
  case $command in
    info) options="--format $password" ;;
    list) options="--day --from --to --month --week --all --find --category --format $password" ;;
    alarms) options="--at --format $password" ;;
    add | edit)
      options="--date --start --end --all-day --no-all-day --subject --notes --category --confidential"
      options+=" --no-confidential --repeat --until --no-repeat $password"
      [ "$command" = edit ] && options+=" $record"
      ;;
    move | copy) options="--to $record $password" ;;
    delete) options="$record $password" ;;
    compact) options="--force" ;;
    check) options="--format" ;;
    new) options="--examples --group" ;;
    share) options="--group" ;;
    contacts) options="--name --email --book --format $record $password" ;;
    participants) options="--format $password" ;;
    register) options= ;;
    export) options="--from --to --subject --format $password" ;;
    import) options="--header --separator --quote --map --format --zone --verbose --dry-run $password" ;;
    report) options="--from --to --subject --id $password" ;;
    *)
      options="info list alarms add edit move copy delete compact check new share contacts participants register export report import"
      COMPREPLY=($(compgen -W "$options --help --version" -- "$current"))
      return
      ;;
  esac
  case $before in
    contacts) COMPREPLY=($(compgen -W "list add edit delete $options --help" -- "$current")) ;;
    --format)
      [[ $command = *port ]] && word="csv ics" || word="text csv json"
      COMPREPLY=($(compgen -W "$word" -- "$current"))
      ;;
    --group) COMPREPLY=($(compgen -g -- "$current")) ;;
    --header | --quote) COMPREPLY=($(compgen -W "yes no" -- "$current")) ;;
    --zone) COMPREPLY=($(cd /usr/share/zoneinfo 2>/dev/null && compgen -f -- "$current")) ;;
    --separator) COMPREPLY=($(compgen -W "comma tab" -- "$current")) ;;
    --repeat) COMPREPLY=($(compgen -W "daily:1 weekly:1 monthly:1 yearly:1" -- "$current")) ;;
    --day | --from | --to | --week | --date | --until) COMPREPLY=($(compgen -W "$(date +%F)" -- "$current")) ;;
    --month) COMPREPLY=($(compgen -W "$(date +%Y-%m)" -- "$current")) ;;
    --at) COMPREPLY=($(compgen -W "$(date +%FT%H:%M)" -- "$current")) ;;
    --start | --end | --subject | --notes | --category | --find | --offset | --password | --name | --email | --id | --map) COMPREPLY=() ;;
    *)
      if [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W "$options --help" -- "$current"))
      else
        compopt -o filenames 2>/dev/null
        local IFS=$'\n'
        COMPREPLY=($(compgen -f -- "$current"))
      fi
      ;;
  esac
}
complete -F _tempoline_cli tempoline-cli
