#!/usr/bin/env bash
# Runs the content checker: on config/, which has no fault, and on copies that the examples in broken/ break.
# The copies have one language, English. An example is a few commands that run in the copy; each line that begins with "#: " is a pattern that the
# checker must print. Usage: check_content.sh CHECKER ROOT
set -uo pipefail
checker=$1
root=$2
failed=0
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

Fail() {
  printf '%s: %s\n' "$1" "$2"
  failed=1
}

# $1 the example, $2 what the checker printed: each pattern stands there, and nothing beside them.
CompareFaults() {
  local pattern wanted=0
  while read -r pattern; do
    wanted=$((wanted + 1))
    grep -qE -- "$pattern" "$2" || Fail "$1" "nothing printed like: $pattern"
  done < <(sed -n 's/^#: //p' "$root/tests/content_tool/broken/$1.sh")
  [ "$wanted" -gt 0 ] || Fail "$1" "expects nothing"
  local printed
  printed=$(grep -c '^config/' "$2")
  [ "$printed" -le "$wanted" ] || Fail "$1" "$printed faults printed, $wanted expected: $(head -5 "$2")"
}

RunExample() {
  rm -rf "$work/copy"
  mkdir -p "$work/copy/config"
  cp -r "$root"/config/[!a]* "$work/copy/config/"
  find "$work/copy/config/language" -type f ! -name english -delete
  # The music is large; only an example that names it gets a copy of its own.
  if grep -q config/audio "$root/tests/content_tool/broken/$1.sh"; then cp -r "$root/config/audio" "$work/copy/config/"
  else ln -s "$root/config/audio" "$work/copy/config/"; fi
  (cd "$work/copy" && bash -eu "$root/tests/content_tool/broken/$1.sh") || return Fail "$1" "can't be set up"
  (cd "$work/copy" && "$checker" --check) >"$work/out" 2>&1
  local status=$?
  [ "$status" = 1 ] || Fail "$1" "the checker ended with $status"
  CompareFaults "$1" "$work/out"
}

(cd "$root" && "$checker" --check) || Fail config "the game's own content has faults"
examples=0
for file in "$root"/tests/content_tool/broken/*.sh; do
  RunExample "$(basename "$file" .sh)"
  examples=$((examples + 1))
done
[ "$examples" -gt 20 ] || Fail broken "only $examples examples"
echo "$examples examples"
exit "$failed"
