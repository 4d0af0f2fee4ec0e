#!/usr/bin/env bash
# Drives tarnvale-ship in a copy of the installation: ships go round through all forms, bad ones are told of, and nothing is
# overwritten unasked. Usage: check_ships.sh TOOL ROOT
set -uo pipefail
tool=$1
root=$2
failed=0
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
mkdir "$work/cache" "$work/config" "$work/saves"
cp "$root/saves/Showpiece.sts" "$work/saves"
for part in text language graphics; do ln -s "$root/config/$part" "$work/config/$part"; done
cd "$work" || exit 1

# $1 the exit code, $2 a pattern of one line of what is printed (out and err together), then the call.
Expect() {
  local wanted=$1 pattern=$2 status
  shift 2
  "$tool" "$@" >"$work/out" 2>&1
  status=$?
  [ "$status" = "$wanted" ] || { echo "tarnvale-ship $*: ended with $status, not $wanted: $(cat "$work/out")"; failed=1; }
  grep -qE -- "$pattern" "$work/out" || { echo "tarnvale-ship $*: printed nothing like $pattern: $(cat "$work/out")"; failed=1; }
}

# The blocks of a stream ship: all that stands behind its name.
Blocks() { zcat "saves/$1" | tail -c "$(($(zcat saves/Showpiece.sts | wc -c) - 12))"; }

Expect 0 '^usage: tarnvale-ship' --help
Expect 0 '^  blocks  3123$' info Showpiece.sts
Expect 0 '^ +985 +35 +57  Ink$' list saves/Showpiece.sts
Expect 0 'whole, 3123 blocks' verify Showpiece.sts

# Every form into every other, one ship all the way.
previous=Showpiece.sts
for next in a.sts f1 b.ssf c.sls d.ssf f2/ e.sls g.sts h.sls f3 i.sls j.ssf k.sts; do
  Expect 0 "^saves/$next/?: all of saves/$previous" convert "$previous" "saves/$next"
  previous=$next
done
cmp <(Blocks Showpiece.sts) <(Blocks k.sts) || failed=1
Expect 0 'saves/f3/: whole, 3123 blocks' verify f1 b.ssf c.sls f3 k.sts

# What is there stays, unless it is meant to go, and then the day's backup and the old ship of a failed write stay.
cp saves/a.sts old.sts
Expect 1 'saves/a.sts is there already. --force replaces it.' convert c.sls a.sts
Expect 1 'saves/f1/ is there already' convert c.sls f1
cmp old.sts saves/a.sts || failed=1
(ulimit -f 2; trap '' XFSZ; "$tool" convert --force c.sls a.sts) >out 2>&1 && { echo "a full disk: $(cat "$work/out")"; failed=1; }
cmp old.sts saves/a.sts || failed=1
Expect 0 'saves/a.sts: all of' convert --force f2 a.sts
Expect 0 'saves/f1/: all of' convert a.sts f1 --force
cp old.sts saves/a.sts.replaced
Expect 0 'whole' verify "$(basename saves/a*.bak)" a.sts.replaced

# Damaged ships give what can be read, and say so.
head -c 900 saves/a.sts >saves/cut.sts
cp saves/cut.sts saves/kept.sts.damaged2
head -c 9000 saves/c.sls >saves/cut.sls
zcat saves/b.ssf | head -n 100 | gzip >saves/cut.ssf
cp -r saves/f1 saves/cut
truncate -s -3 "$(find saves/cut -name '*.sss' | head -1)"
for ship in cut.sts kept.sts.damaged2 cut.sls cut.ssf cut; do
  Expect 1 "^tarnvale-ship: saves/$ship/?: " verify "$ship"
  Expect 1 "what could be read of saves/$ship" convert "$ship" "rescued-$ship/"
  Expect 0 'whole, [1-9]' verify "rescued-$ship/"
done
cmp saves/cut.sts saves/kept.sts.damaged2 || failed=1

# Who stops reading stops no conversion.
"$tool" convert --force cut.sts b.ssf 2>&1 | true
[ "${PIPESTATUS[0]}" = 1 ] && [ -e saves/b.ssf.replaced ] || { echo "a broken pipe ended a conversion"; failed=1; }
Expect 0 'whole' verify b.ssf

# A name may hold anything. What a terminal would obey is not printed.
{ printf '\1\14evil\33[2J\n\302\233x\0'; zcat saves/a.sts | tail -c +"$(($(zcat saves/a.sts | head -c 2 | tail -c 1 | od -An -tu1) + 4))"; } | gzip >saves/named.sts
Expect 0 '^  name    evil\?\[2J\?\?x$' info named.sts

# They don't cost a whole one, and a folder keeps its place.
for target in g.sts d.ssf h.sls f2/; do
  Expect 1 "saves/$target: what could be read" convert --force cut.sts "$target"
  [ "$target" = f2/ ] && target=f2.replaced/ || target=$target.replaced
  Expect 0 "saves/$target: whole, 3123 blocks" verify "$target"
done
printf '\1\0%036d' 7 | tee place >saves/f3/info.sis
Expect 0 'all of' convert --force a.sts f3
cmp place saves/f3/info.sis || failed=1
echo 'no ship' | tee saves/text.sts >saves/text
ln -s f1 saves/linked
for ship in text.sts text linked missing.sts missing; do Expect 1 "saves/$ship" verify "$ship" f1; done
Expect 1 'can.t be read' convert text.sts new.sts
printf 'Version 2\nMainSection 1\n0 0 0 0 5 2 2 1 5 2 0 0 0\n0 0 0 1 5 2 2 1 5 2 0 0 0\n0 0 0 0 0 0 0 0 0 0 0 0\n' >saves/corner.ssf
Expect 1 'corner.ssf: The block in cell \(0, 0, 0\) was left out' convert corner.ssf corner.sts
[[ $(flock saves "$tool" convert a.sts beside.sts 2>&1) == *"a server runs"* ]] || { echo "a server was not seen"; failed=1; }
[ ! -e saves/new.sts ] || { echo "a ship was made of none"; failed=1; }

# Called wrongly.
for call in "" "fly a.sts" "info" "convert a.sts" "convert a.sts a.sts" "convert a.sts x.bak" "convert a.sts x.txt" "--wings info a.sts" \
  "info --force a.sts" "info ../a.sts" "info .hidden/" "info NULL" "convert a.sts sub/x.sts"; do
  # shellcheck disable=SC2086
  Expect 2 'Try: tarnvale-ship --help' $call
done
Expect 1 'is no installation' --root "$work/saves" info a.sts
cd /
Expect 0 'whole' --root="$work" verify a.sts 2>/dev/null
exit "$failed"
