# Reads tests/apple/sdk's headers; prints each thing that they declare: CLASS MEMBER VERSION. What is
# in no class has "constant" there; VERSION is that of iOS, or "always".
#
# With -v only=classes it prints CLASS VERSION of each class. The headers are formatted so that
# whatever goes on stands indented.

function version_in(text) {
  if (!match(text, /ios\([0-9.]+\)/)) return ""
  return substr(text, RSTART + 4, RLENGTH - 5)
}

function without_marks(text) {
  gsub(/API_AVAILABLE\((ios|macos)\([0-9.]+\)(, (ios|macos)\([0-9.]+\))*\)/, "", text)
  gsub(/[ \t;]+$/, "", text)
  return text
}

function say(member, statement,   version) {
  if (only == "classes") return
  version = version_in(statement)
  if (version == "") version = class_version
  print owner, member, version == "" ? "always" : version
}

function last_word(text) {
  text = without_marks(text)
  sub(/.*[^A-Za-z0-9_]/, "", text)
  return text
}

# "- (void)a:(int)x b:(int)y" is "a:b:".
function selector_of(text,   count, parts, i, selector) {
  text = without_marks(text)
  while (gsub(/\([^()]*\)/, "", text)) {}
  sub(/^[-+][ \t]*/, "", text)
  if (text !~ /:/) return text
  count = split(text, parts, ":")
  for (i = 1; i < count; i++) {
    sub(/.*[ \t]/, "", parts[i])
    selector = selector parts[i] ":"
  }
  return selector
}

function take(statement,   words) {
  if (statement ~ /^@(interface|protocol)/) {
    if (statement ~ /;/) return
    split(statement, words, /[ \t<:(]+/)
    owner = words[2]
    class_version = pending != "" ? pending : version_in(statement)
    if (only == "classes" && statement ~ /^@interface/) print owner, class_version == "" ? "always" : class_version
  } else if (statement ~ /^@end/) {
    owner = "constant"; class_version = ""
  } else if (statement ~ /^@property/) {
    say(last_word(statement), statement)
  } else if (statement ~ /^[-+]/) {
    say(selector_of(statement), statement)
  } else if (statement ~ /^(FOUNDATION_EXPORT|SK_EXTERN)/) {
    say(last_word(statement), statement)
  }
  pending = statement ~ /^API_AVAILABLE/ ? version_in(statement) : ""
}

BEGIN { owner = "constant" }
FNR == 1 { if (kept != "") take(kept); kept = "" }
{ sub(/\/\/.*/, "") }
/^[ \t]*$/ { next }
/^[ \t}]/ { kept = kept " " $0; next }
{ if (kept != "") take(kept); kept = $0 }
END { if (kept != "") take(kept) }
