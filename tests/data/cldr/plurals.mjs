// Plural rules after UTS 35 part 3, "Language Plural Rules", for whole numbers.

// A whole number has no visible fraction (v, w, f, t) and no exponent (c, e).
const operand = (name, count) => (name === 'n' || name === 'i' ? count : 0);

// "3..10,12"
function contains(ranges, value) {
  return ranges.split(',').map((range) => range.split('..').map(Number))
    .some(([first, last = first]) => first <= value && value <= last);
}

// "n % 100 = 3..10"
function holds(relation, count) {
  const [, name, modulus, sign, ranges] =
    /^([nivwftce])(?: % (\d+))? (=|!=) ([\d.,]+)$/.exec(relation.trim());
  const value = modulus ? operand(name, count) % Number(modulus) : operand(name, count);
  return contains(ranges, value) === (sign === '=');
}

function matches(rule, count) {
  const condition = rule.split('@')[0].trim();
  return condition.split(' or ')
    .some((all) => all.split(' and ').every((relation) => holds(relation, count)));
}

// Rules belong to a language, or to a language in a region ("pt-PT"); scripts play no part.
export function pluralCategory(cldr, tag, count) {
  const all = cldr.supplemental('plurals')['plurals-type-cardinal'];
  const rules = all[tag] ?? all[tag.split('-')[0]];
  const name = ['zero', 'one', 'two', 'few', 'many']
    .find((category) => rules[`pluralRule-count-${category}`] &&
      matches(rules[`pluralRule-count-${category}`], count));
  return name ?? 'other';
}
