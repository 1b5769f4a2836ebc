// Durations of one unit after UTS 35 part 1, "Unit Elements".

import { parseLocale } from './cldr.mjs';
import { pluralCategory } from './plurals.mjs';

// A count of fewer than four digits needs no grouping.
function countText(cldr, tag, count) {
  const { numbers } = cldr.main('cldr-numbers-full', 'numbers', tag).data;
  const system = cldr.supplemental('numberingSystems')
    .numberingSystems[numbers.defaultNumberingSystem];
  return String(count).replace(/[0-9]/g, (digit) => [...system._digits][Number(digit)]);
}

export function periodText(cldr, identifier, count, unit) {
  const { tag } = parseLocale(identifier);
  const { name, data } = cldr.main('cldr-units-modern', 'units', tag);
  const patterns = data.units.long[`duration-${unit}`];
  const wanted = `unitPattern-count-${pluralCategory(cldr, tag, count)}`;
  const key = wanted in patterns ? wanted : 'unitPattern-count-other';
  return {
    text: patterns[key].replace('{0}', countText(cldr, tag, count)),
    source: `units.json main/${name}/units/long/duration-${unit}/${key}`,
  };
}
