#!/usr/bin/env bash
# Asks the Terminal of this Mac what the tests of TerminalBridge.applescript take for granted about Terminal, and
# compares line by line. It was never run on a Mac: it was tried with a stand-in for osascript alone.
#
#   record.sh [--keys] [--only SCENARIO] [ANSWERS]
#
# Takes some three minutes. Opens a window of its own for each scenario, types into that one only, and closes it; other
# windows are counted and nothing else. Windows come to the front meanwhile, so leave the Mac alone. The system asks
# whether the program that runs this may control Terminal. With --keys it also presses two keys (System Events and the
# accessibility permission are asked for); a click in another window could take one.
#
# The answers go to the file ANSWERS when one is named. Ends with status 0 when every answer is the one that the tests
# count on, 1 when some differ, 3 when this Mac does not let Terminal be asked at all. An answer that differs is a
# finding: put it into tests/macos/script/desktop.py, and see which test of the script fails then.
set -euo pipefail

keys=no
only=
while true; do
  case ${1:-} in
    --keys) keys=yes ;;
    --only)
      only=${2:?a scenario}
      shift
      ;;
    -*)
      sed -n '5s/^# *//p' "$0" >&2
      exit 2
      ;;
    *) break ;;
  esac
  shift
done
record=${1:-/dev/null}
here=$(cd "$(dirname "$0")/../.." && pwd)
contract=$here/tests/macos/script/contract
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The bridge's handlers and the scenarios', one script.
cat "$here/TerminalAutomation/AppleScript/TerminalBridge.applescript" "$contract/Scenarios.applescript" >"$work/handlers"

# ask: runs the statements of its input after the handlers, and says what they return as AppleScript writes it, or
# "error NUMBER". "-s s" is what keeps lists readable.
ask() {
  cat "$work/handlers" - >"$work/call.applescript"
  if osascript -s s "$work/call.applescript" >"$work/answer" 2>"$work/error"; then
    cat "$work/answer"
    return
  fi
  # "call.applescript:12:34: execution error: … (-1743)"
  local number
  number=$(sed -nE 's/.*\((-?[0-9]+)\)[[:space:]]*$/\1/p' "$work/error" | tail -n 1)
  if [ -z "$number" ]; then cat "$work/error" >&2; fi
  echo "error ${number:-unknown}"
}

# Where this is: without it a difference says little.
system="macOS $(sw_vers -productVersion) ($(sw_vers -buildVersion))"
echo "$system"

# A question that changes nothing, to a Terminal that is started if need be: may Terminal be asked at all? The system's own
# question to the user stays up for two minutes.
answer=$(ask <<'QUESTION'
	if not my terminalRuns() then my startTerminal()
	with timeout of 150 seconds
		tell application id "com.apple.Terminal" to set windowNumbers to id of every window
	end timeout
	return windowNumbers
QUESTION
)
case $answer in
  '{'*) ;;
  *)
    echo "Terminal cannot be asked: $answer" >&2
    case $answer in
      'error -1743' | 'error -1744') echo 'Allow it in System Settings > Privacy & Security > Automation.' >&2 ;;
      'error -1712') echo 'The question for permission was not answered.' >&2 ;;
    esac
    exit 3
    ;;
esac

passed=0
failed=0
echo "# $system" >"$record"
while IFS= read -r line; do
  name=${line%%: *}
  expected=${line#*: }
  if [ "$name" = pressedKeys ] && [ "$keys" = no ]; then continue; fi
  if [ -n "$only" ] && [ "$name" != "$only" ]; then continue; fi

  # A window for this scenario, the scenario, and the end of the window, also after an error. A scenario may have closed
  # its window itself.
  answer=$(ask <<SCENARIO
	set ownRow to my createWindow()
	try
		set answerList to my $name(item 1 of ownRow, item 2 of ownRow)
	on error errorText number errorNumber
		if my isShown(item 2 of ownRow) then my closeWindow(item 2 of ownRow)
		error errorText number errorNumber
	end try
	if my isShown(item 2 of ownRow) then my closeWindow(item 2 of ownRow)
	return answerList
SCENARIO
  )
  printf '%s: %s\n' "$name" "$answer" >>"$record"
  if [ "$answer" = "$expected" ]; then
    echo "same    $name: $answer"
    passed=$((passed + 1))
  else
    echo "DIFFERS $name: $answer, the tests count on $expected"
    failed=$((failed + 1))
  fi
done <"$contract/answers.txt"

echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" != 0 ]
