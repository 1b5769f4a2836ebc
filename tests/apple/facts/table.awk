# Reads the table of docs/ios.md: | `CLASS` | VERSION | `MEMBER` `MEMBER` |. Prints CLASS MEMBER VERSION.

BEGIN { FS = "|" }
/^## / { isIn = $0 ~ /^## What it asks of the system/ }
isIn && /^\| `/ {
  owner = $2; version = $3
  gsub(/[ `]/, "", owner); gsub(/ /, "", version)
  count = split($4, members, " ")
  for (i = 1; i <= count; i++) { gsub(/`/, "", members[i]); print owner, members[i], version }
}
