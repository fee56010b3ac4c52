#!/usr/bin/env bash
# Drives the built rovani program as a user would: exit statuses, messages
# on standard error, and what reaches standard output. User defaults go to
# stores in a scratch directory of this run's own.
set -uo pipefail
rovani=$1
examples=$2
cli_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir user all a-directory
echo "GNUSTEP_USER_DEFAULTS_DIR=$work/user" > GNUstep.conf
export GNUSTEP_CONFIG_FILE=$work/GNUstep.conf ROVANI_ALL_USERS_DEFAULTS_DIR=$work/all GNUSTEP_TZ=UTC

failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }

# run STATUS ARGS...: runs rovani, checks its exit status, and that no
# platform log line ("<date> <time> rovani[pid:tid] ...") reached stdout.
run() {
  local want=$1; shift
  "$rovani" "$@" > out 2> err
  local got=$?
  [ "$got" = "$want" ] || fail "rovani $* exited $got, not $want: $(cat err)"
  if grep -qE '^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:.]+ rovani\[' out; then fail "log line on stdout: rovani $*"; fi
}
# says FILE TEXT: FILE holds TEXT (a fixed string).
says() { grep -qF -- "$2" "$1" || fail "expected '$2' in $1, got: $(cat "$1")"; }

# JSON -> XML -> JSON gives the same tree: the library's writer prints
# integers, reals and booleans each in their own way.
run 0 convert xml "$examples/settings.json" -o settings.plist
says settings.plist "<true/>"; says settings.plist "<integer>8080</integer>"; says settings.plist "<real>0.75</real>"
run 0 convert json settings.plist -o round.json
run 0 convert json "$examples/settings.json" -o direct.json
cmp -s round.json direct.json || fail "round trip changed the tree: $(diff direct.json round.json)"
"$rovani" convert json - < "$examples/settings.plist" > sample.json
cmp -s sample.json direct.json || fail "the sample property list differs from the sample JSON"

run 0 print "$examples/settings.plist"
says out "dictionary (9 keys)"; says out "  debug: boolean false"; says out "  ratio: number 0.75"
says out "    [1]: dictionary (3 keys)"; says out '      host: string "beta.example.com"'

# What a property list cannot hold is refused, naming the value.
echo '{"a": {"b": [1, {"c": null}]}}' > null.json
run 1 convert xml null.json; says err "rovani convert: null.json: "
printf '{"a": {"b": "x\\u0001"}}' > control.json
run 1 convert xml control.json; says err "rovani convert: control.json: "
printf '<plist><dict><key>d</key><array><date>0000-06-01T00:00:00Z</date></array></dict></plist>' > year0.plist
run 1 convert xml year0.plist; says err "rovani convert: year0.plist: "
# Everything else goes into a property list as itself and comes back.
printf '{"s": "a\\ud83d\\ude00b \\\\U0041\\r", "t": true}' > text.json
run 0 convert xml text.json -o text.plist
says text.plist "<string>a"$'\xF0\x9F\x98\x80'"b \U0041&#13;</string>"; says text.plist "<true/>"
run 0 convert json text.plist -o text-back.json
run 0 convert json text.json -o text-direct.json
cmp -s text-back.json text-direct.json || fail "text changed on its way: $(diff text-direct.json text-back.json)"
# Any value at the top; 64-bit integers and a leading U+FEFF exactly both ways.
printf '[1, {"\\ufeffk": "\\ufeffv", "u": 18446744073709551615, "s": -9223372036854775808}]' > wide.json
run 0 convert xml wide.json -o wide.plist
says wide.plist "<integer>18446744073709551615</integer>"; says wide.plist "<key>"$'\xEF\xBB\xBF'"k</key>"
run 0 convert json wide.plist
says out "18446744073709551615,"; says out "-9223372036854775808"; says out '"'$'\xEF\xBB\xBF''v"'
printf '{"a": {"b": [1, 18446744073709551616]}}' > huge.json
run 1 convert xml huge.json; says err "rovani convert: huge.json:1:17: a.b.1: an integer beyond 64 bits"
# Dates and data reach JSON only as text, when asked for.
printf '<plist><dict><key>d.x</key><date>2026-11-25T10:30:05Z</date><key>b</key><data>eHk=</data></dict></plist>' > dated.plist
run 1 convert json dated.plist; says err 'dated.plist: b: data, which JSON cannot hold'
run 0 convert json --dates-as-text --data-as-base64 dated.plist
says out '"d.x": "2026-11-25T10:30:05Z"'; says out '"b": "eHk="'
run 2 convert xml --dates-as-text dated.plist
# Binary lists written elsewhere (Python's plistlib) are read, and faults in
# them are shown by byte offset; OpenStep text by line and column.
python3 -c 'import plistlib,sys; sys.stdout.buffer.write(plistlib.dumps({"n": [1, 2**64-1, -5], "s": "Zoë"}, fmt=plistlib.FMT_BINARY))' > py.bplist
run 0 convert json py.bplist; says out "18446744073709551615"; says out '"s": "Zoë"'
head -c 20 py.bplist > short.bplist
run 1 print short.bplist; says err "rovani print: short.bplist: byte 20: too short for a binary property list"
printf '{ list = (1, 2); name = "x"; }' > step.plist
run 0 convert json step.plist; says out '"name": "x"'
printf '{ list = (1, 2;\n  name = "x"; }' > badstep.plist
run 1 print badstep.plist; says err "rovani print: badstep.plist:1:15: expected ',' or ')'"
printf '<plist>\n  <dict><key>a</key><integer>12x</integer></dict></plist>' > badint.plist
run 1 convert json badint.plist; says err "rovani convert: badint.plist:2:21: not an integer of at most 64 bits"
# Binary out: read back alike by the library and by plistlib.
run 0 convert binary wide.json -o wide.bplist
run 0 convert json wide.bplist; says out "18446744073709551615"
python3 -c 'import plistlib,sys; v = plistlib.load(open("wide.bplist","rb")); sys.exit(v[1]["u"] != 2**64-1)' ||
  fail "plistlib reads the binary list differently"

# Missing, unreadable (a directory: the tests may run as root) and
# malformed input, for every command that reads files.
printf '{"a": 1,\n  "b" }' > bad.json
for command in "convert xml" print "base64 encode"; do
  run 1 $command missing.json; says err "rovani ${command%% *}: missing.json: cannot open: No such file or directory"
  run 1 $command a-directory; says err "a-directory: cannot read: Is a directory"
done
for command in "convert json" print; do
  run 1 $command bad.json; says err "bad.json:2:7: Missing ':' after object member name"
done
run 1 lint "$examples/settings.json" bad.json missing.json a-directory
says out "$examples/settings.json: OK"; says out "bad.json:2:7: Missing ':'"
says out "missing.json: cannot open: No such file or directory"; says out "a-directory: cannot read: Is a directory"
echo 'TW*u' > bad.b64
run 1 base64 decode bad.b64; says err "rovani base64: bad.b64: invalid Base64 character at offset 2"
run 1 date 'no date'; says err "rovani date: 'no date' is no date"
run 1 defaults write com.example.tool n -int twelve; says err "rovani defaults: n: 'twelve' is not an integer"
run 1 defaults write com.example.tool n -json '[1, null]'; says err "rovani defaults: n: "

# Bad usage: exit status 2 and a pointer to the help.
run 2 frobnicate; says err "rovani: unknown command 'frobnicate'"
run 2 --frobnicate; says err "rovani: unknown option '--frobnicate'"
for command in convert print lint base64 hash uuid date; do
  run 2 $command --bogus; says err "rovani $command: unknown option '--bogus'"; says err "Try 'rovani $command --help'."
done
run 2 defaults read --bogus com.example.tool; says err "rovani defaults: unknown option '--bogus'"
run 2 convert yaml x; run 2 print; run 2 uuid -n 0; run 2 defaults write com.example.tool key
run 0 --help; says out "Commands:"
run 0 convert --help; says out "Usage: rovani convert binary|xml|json IN [-o OUT]"
run 0 --version; grep -qxE 'rovani [0-9]+\.[0-9]+\.[0-9]+' out || fail "version line: $(cat out)"

# Small services.
printf 'Man' | "$rovani" base64 encode > out; says out "TWFu"
head -c 1000 /dev/urandom > random.bin
base64 random.bin | "$rovani" base64 decode | cmp -s - random.bin || fail "decoding lost bytes"
"$rovani" base64 encode random.bin | tr -d '\n' | cmp -s - <(base64 -w0 random.bin) || fail "encoding differs"
run 0 hash abc; says out "90015098  abc"
run 0 uuid -n 3
[ "$(grep -E '^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$' out | sort -u | wc -l)" = 3 ] ||
  fail "not three distinct UUIDs: $(cat out)"
run 0 date --format dd.MM.yyyy 03/15/2009; says out "15.03.2009"

# User defaults: the current user's store over the all-users one.
run 0 defaults write com.example.tool greeting hello
run 0 defaults write com.example.tool on -bool yes
run 0 defaults write com.example.tool list -json '[1, 2.5, false]'
run 0 defaults write --all-users com.example.tool greeting -string everyone
run 0 defaults write --all-users com.example.tool shared -int 7
run 0 defaults read com.example.tool
says out "dictionary (4 keys)"; says out '  greeting: string "hello"'; says out "  on: boolean true"
says out "    [1]: number 2.5"; says out "  shared: number 7"
says user/Rovani/com.example.tool.plist "<true/>"; says all/com.example.tool.plist "<integer>7</integer>"
run 0 defaults delete com.example.tool greeting
run 0 defaults read com.example.tool greeting; says out 'greeting: string "everyone"'
run 1 defaults delete com.example.tool greeting-nowhere; says err "com.example.tool has no key 'greeting-nowhere'"
run 0 defaults delete --all-users com.example.tool
run 0 defaults delete com.example.tool
run 0 defaults read com.example.tool; says out "dictionary (0 keys)"
touch plain-file
ROVANI_ALL_USERS_DEFAULTS_DIR=$work/plain-file/defaults run 1 defaults write --all-users com.example.tool k v
says err "cannot write the all-users store"

source "$cli_dir/edit.sh"

[ "$failures" = 0 ] || { echo "$failures failed"; exit 1; }
echo "all rovani checks passed"
