# fish completion for orvesa-translate

set -l commands translate polish prompt recognize settings key autostart doctor
set -l asks translate polish prompt

complete -c orvesa-translate -f
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -l perform -x -a 'translateSelection polishSelection ocrTranslate settings' -d 'Ask the running utility for an action'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -l help -d 'Print help'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a translate -d 'Translate a text and print the answer'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a polish -d 'Rewrite a text and print the answer'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a prompt -d 'Run a saved prompt on a text'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a recognize -d 'Print the text in an image file'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a settings -d 'Show and change preferences'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a key -d 'Keep or remove API keys'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a autostart -d 'Start the utility at login'
complete -c orvesa-translate -n "not __fish_seen_subcommand_from $commands" -a doctor -d 'Say what the utility finds on this desktop'

complete -c orvesa-translate -n "__fish_seen_subcommand_from $asks" -l provider -x -a 'openAI gemini anthropic xAI' -d 'Another service'
complete -c orvesa-translate -n "__fish_seen_subcommand_from $asks" -l model -x -d 'Any model of that service'
complete -c orvesa-translate -n "__fish_seen_subcommand_from $asks" -l thinking -x -a 'on off' -d 'Let the model reason first'
complete -c orvesa-translate -n '__fish_seen_subcommand_from translate' -l to -x -a "'Traditional Chinese' Japanese English" -d 'Into this language'
complete -c orvesa-translate -n '__fish_seen_subcommand_from polish' -l mode -x -a 'businessJapanese naturalJapanese traditionalChinese concise' -d 'In this way'
complete -c orvesa-translate -n '__fish_seen_subcommand_from recognize' -F
complete -c orvesa-translate -n '__fish_seen_subcommand_from doctor' -l network -d 'Also try to reach the chosen service'
complete -c orvesa-translate -n '__fish_seen_subcommand_from autostart' -a 'on off status'
complete -c orvesa-translate -n '__fish_seen_subcommand_from settings; and not __fish_seen_subcommand_from list get set reset' -a 'list get set reset'
complete -c orvesa-translate -n '__fish_seen_subcommand_from settings; and __fish_seen_subcommand_from get set reset' -a "(orvesa-translate settings list 2>/dev/null | string replace -rf '^([A-Za-z.]*)=.*' '\$1')"
complete -c orvesa-translate -n '__fish_seen_subcommand_from key; and not __fish_seen_subcommand_from set clear status' -a 'set clear status'
complete -c orvesa-translate -n '__fish_seen_subcommand_from key; and __fish_seen_subcommand_from set clear' -a 'openAI gemini anthropic xAI'
