# Reads the platform's API listing (TypeScript declarations); prints CLASS MEMBER VERSION as
# headers.awk does, but with the parts of a selector joined: "a:bC:" is "aBC".

function say(member,   version) {
  version = since != "" ? since : owner_since
  print owner, member, version == "" ? "always" : version
  since = ""
}

BEGIN { owner = "constant" }
/@since/ { since = $3; next }
/^(declare class|interface) / {
  owner = $1 == "declare" ? $3 : $2
  sub(/<.*/, "", owner)
  owner_since = since
  since = ""
  next
}
/^}/ { owner = "constant"; owner_since = ""; since = ""; next }
/^declare (var|const) / { name = $3; sub(/:.*/, "", name); say(name); next }
owner != "constant" && /^\t[A-Za-z]/ {
  line = $0
  sub(/^\t(static )?(readonly )?/, "", line)
  if (match(line, /^[A-Za-z0-9_]+/)) say(substr(line, RSTART, RLENGTH))
}
