# get, set, remove, defaults export and import, and shell completion.
# Sourced by run-cli-tests.sh, in its scratch directory, with its helpers.

# plist FILE EXPRESSION: Python's reading of a property list, d being the root.
plist() { python3 -c "import plistlib,sys; d=plistlib.load(open(sys.argv[1],'rb')); print($2)" "$1"; }

# Every kind of value, written by set and read back by get and by plistlib.
cp "$examples/settings.plist" edit.plist
run 0 set edit.plist servers.0.port -int 9223372036854775807
run 0 set edit.plist servers.2 -json '{"host": "gamma", "tags": [], "on": true}'
run 0 set edit.plist window.ratio -float 0.1
run 0 set edit.plist window.title 'Zoë'
run 0 set edit.plist window.on -bool yes
run 0 set edit.plist when -date 2026-11-25T12:30:05+02:00
run 0 set edit.plist blob -data 'AAEC/w=='
run 0 set edit.plist 'a\.b' -json '{"c\\d": {}}'
run 0 set edit.plist 'a\.b.c\\d.0' -string x  # a key, since c\d is a dictionary
run 0 set edit.plist tags.3 -int -5            # the index equal to the count appends
[ "$(plist edit.plist "d['servers'][0]['port'], d['servers'][2], d['window']['ratio'], d['window']['title'], d['window']['on'], d['when'].isoformat(), d['blob'].hex(), d['a.b'], d['tags'], d['owner']")" = \
  "9223372036854775807 {'host': 'gamma', 'on': True, 'tags': []} 0.1 Zoë True 2026-11-25T10:30:05 000102ff {'c\\\\d': {'0': 'x'}} ['linux', 'gnustep', 'c++', -5] Zoë Müller" ] ||
  fail "set wrote the wrong values: $(plist edit.plist d)"
for case in "servers.0.port|9223372036854775807" "window.ratio|0.1" "window.on|true" "debug|false" \
            "when|2026-11-25T10:30:05Z" "blob|AAEC/w==" "window.title|Zoë" 'a\.b.c\\d.0|x' "tags.3|-5"; do
  run 0 get edit.plist "${case%%|*}"; [ "$(cat out)" = "${case#*|}" ] || fail "get ${case%%|*}: $(cat out)"
done
run 0 get edit.plist servers.1; says out "dictionary (3 keys)"; says out '  host: string "beta.example.com"'
run 0 get edit.plist tags --json; [ "$(tr -d ' \n' < out)" = '["linux","gnustep","c++",-5]' ] || fail "get --json: $(cat out)"
run 0 get edit.plist window --xml; [ "$(plist out "d['on']")" = True ] || fail "get --xml: $(cat out)"
for kind in string:owner integer:version real:ratio boolean:debug date:when data:blob array:tags dictionary:window; do
  run 0 get edit.plist "${kind#*:}" --expect "${kind%%:*}"
done
run 1 get edit.plist ratio --expect integer; says err "ratio is a real, not an integer"
run 1 get edit.plist servers.9.host; says err "edit.plist: servers.9: no item 9 in servers (3 items)"
run 1 get edit.plist window.depth.x; says err "window.depth: no key 'depth' in window"
run 1 get edit.plist owner.x; says err "owner.x: owner is a string, not a dictionary or an array"
run 1 get edit.plist tags.first; says err "tags is an array, and 'first' is no index"

# Refusals leave the file byte for byte as it was.
cp edit.plist before.plist
run 1 set edit.plist missing.key v; says err "missing: no key 'missing' in the top level"
run 1 set edit.plist tags.9 v; says err "no item 9 in tags (4 items)"
run 1 set edit.plist n -int 18446744073709551616; says err "n: '18446744073709551616' does not fit in 64 bits"
run 1 set edit.plist n -date 2026-02-29T00:00:00Z; says err "is no date of the years 1 to 9999"
run 1 set edit.plist n -data 'AA=A'; says err "Base64 text after '=' padding at offset 3"
run 1 set edit.plist n -json '{"a": null}'; says err "n.a: a null value"
run 1 set edit.plist n -bool maybe; run 1 set edit.plist n -float nan
run 1 remove edit.plist tags.4; run 1 remove edit.plist window.nothing
cmp -s before.plist edit.plist || fail "a refused edit changed the file"

# remove; the mode and a symbolic link survive an edit; standard input and output.
chmod 600 edit.plist; ln -s edit.plist link.plist
run 0 remove link.plist tags.0
run 0 remove link.plist 'a\.b'
[ -L link.plist ] && [ "$(stat -c %a edit.plist)" = 600 ] || fail "the edit replaced the link or the mode"
[ "$(plist edit.plist "d['tags'], 'a.b' in d")" = "['gnustep', 'c++', -5] False" ] || fail "remove: $(plist edit.plist d)"
run 0 set - window.width -int 1 < edit.plist; [ "$(plist out "d['window']['width']")" = 1 ] || fail "set - -"

# A JSON document stays JSON, with every other value kept.
cp "$examples/settings.json" edit.json
run 0 set edit.json servers.1.port -int 1
run 0 remove edit.json tags
python3 - edit.json "$examples/settings.json" <<'PY' || fail "the JSON edit: $(cat edit.json)"
import json, sys
new, old = (json.load(open(p)) for p in sys.argv[1:])
old["servers"][1]["port"] = 1; del old["tags"]
assert new == old, new
PY
cp edit.json before.json; run 1 set edit.json when -date 2026-11-25T10:30:05Z; cmp -s before.json edit.json || fail "refused JSON edit"

# A binary property list stays binary.
run 0 convert binary "$examples/settings.json" -o edit.bplist
run 0 set edit.bplist servers.0.host -string delta
[ "$(head -c 6 edit.bplist)" = bplist ] || fail "the binary list became another format"
[ "$(plist edit.bplist "d['servers'][0]['host'], d['ratio']")" = "delta 0.75" ] || fail "binary edit"

# kill -9 during set leaves the old file or the new one. The waits spread
# over a run, so some die reading, some writing, and some finish.
python3 -c "import plistlib; plistlib.dump({'k%05d' % i: 'value %d' % i for i in range(20000)} | {'k': 'v0'}, open('big.plist', 'wb'))"
for i in 1 2 3 4 5 6 7 8; do
  cp big.plist old.plist
  "$rovani" set big.plist k "v$i" & pid=$!
  sleep "0.$((RANDOM % 4))$((RANDOM % 10))"; kill -9 $pid 2> /dev/null; wait $pid 2> /dev/null
  now=$("$rovani" get big.plist k)
  if [ "$now" = "v$i" ]; then
    [ "$(plist big.plist "len(d), d['k19999']")" = "20001 value 19999" ] || fail "kill -9: a damaged new file"
  else
    cmp -s old.plist big.plist || fail "kill -9: neither the old nor the new file (k is '$now')"
  fi
done

# Usage: exit status 2.
run 2 get edit.plist; says err "missing KEYPATH"
run 2 get edit.plist k --json --xml
run 2 get edit.plist k --expect number; says err "unknown type 'number'"
run 2 get edit.plist 'bad\key'; says err "a backslash at offset 3 escapes neither"
run 2 set edit.plist k; says err "missing VALUE"
run 2 remove edit.plist k extra; run 2 remove edit.plist k --bogus
run 2 defaults export; run 2 defaults import com.example.tool
for command in get set remove defaults; do run 0 $command --help; says out "Example: rovani $command"; done

# defaults export and import; write takes dates and data.
run 0 defaults write com.example.move when -date 2026-11-25T10:30:05Z
run 0 defaults write com.example.move blob -data TWFu
run 0 defaults write --all-users com.example.move shared -int 7
run 0 defaults export com.example.move moved.plist
[ "$(plist moved.plist "sorted(d), d['blob'], d['when'].isoformat()")" = "['blob', 'shared', 'when'] b'Man' 2026-11-25T10:30:05" ] ||
  fail "export: $(cat moved.plist)"
run 0 defaults export --all-users com.example.move -; [ "$(plist out d)" = "{'shared': 7}" ] || fail "export --all-users"
run 0 defaults import com.example.copy moved.plist
run 0 defaults import --all-users com.example.copy - < "$examples/settings.json"
run 0 defaults read com.example.copy
says out "blob: data (3 bytes) TWFu"; says out "  autosave: boolean true"; says out '    [2]: string "c++"'
echo '{"a": {"b": null}}' > null-import.json
run 1 defaults import com.example.copy null-import.json; says err "a.b: a null value"

# Completion: the script sourced, asked as bash asks it.
completions() {
  bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _rovani; echo "${COMPREPLY[*]}"' \
    _ "$cli_dir/../../tools/rovani/rovani.bash-completion" rovani "$@"
}
check_completion() {
  local want=$1; shift
  [ "$(completions "$@")" = "$want" ] || fail "completing 'rovani $*': '$(completions "$@")', not '$want'"
}
check_completion "set" se
check_completion "--expect" get edit.plist k --e
check_completion "string integer real boolean date data array dictionary" get f k --expect ""
check_completion "-date -data" set f k -d
check_completion "" set f k -int ""
check_completion "edit.bplist edit.json edit.plist" print -- edit.
check_completion "json xml binary" convert ""
check_completion "export" defaults --all-users ex
check_completion "moved.plist" defaults import com.example.app mo

# The shared Base64 codec: every length of the last group, and padding that
# does not complete a group.
for n in 1 2 3; do
  head -c $n random.bin | base64 | "$rovani" base64 decode | cmp -s - <(head -c $n random.bin) || fail "decoding $n bytes"
done
echo 'TQ=' | "$rovani" base64 decode > out 2> err && fail "TQ= decoded"; says err "truncated Base64 text"
