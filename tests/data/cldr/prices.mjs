// Currency amounts after UTS 35 part 3, "Number Format Patterns" and "Currencies".

import { parseLocale } from './cldr.mjs';

// What the tag's region pays with today.
function currencyOfRegion(cldr, region) {
  const currencies = cldr.supplemental('currencyData').currencyData.region[region] ?? [];
  const current = currencies.map((entry) => Object.entries(entry)[0])
    .filter(([, use]) => !use._to && use._tender !== 'false')
    .sort(([, a], [, b]) => (a._from < b._from ? -1 : 1));
  return current.at(-1)?.[0] ?? 'XXX';
}

function fractionDigits(cldr, currency) {
  const { fractions } = cldr.supplemental('currencyData').currencyData;
  return Number((fractions[currency] ?? fractions.DEFAULT)._digits);
}

// Exact, half to even: "1234.5" with 0 digits -> "1234".
function rounded(decimal, digits) {
  const [whole, fraction = ''] = decimal.split('.');
  const scaled = BigInt(whole + fraction.padEnd(digits, '0'));
  const unit = 10n ** BigInt(Math.max(fraction.length - digits, 0));
  const [quotient, twice] = [scaled / unit, (scaled % unit) * 2n];
  const up = twice > unit || (twice === unit && quotient % 2n === 1n);
  const text = (up ? quotient + 1n : quotient).toString().padStart(digits + 1, '0');
  return { whole: text.slice(0, text.length - digits), fraction: text.slice(text.length - digits) };
}

// "#,##,##0.00" -> the last group has 3 digits, the others 2.
function groupSizes(numberPattern) {
  const groups = numberPattern.split('.')[0].split(',').slice(1).map((part) => part.length);
  const primary = groups.at(-1) ?? Infinity;
  return { primary, secondary: groups.length > 1 ? groups.at(-2) : primary };
}

function grouped(whole, { primary, secondary }, minimum, separator) {
  if (whole.length < primary + minimum) return whole;
  const parts = [whole.slice(-primary)];
  for (let rest = whole.slice(0, -primary); rest; rest = rest.slice(0, -secondary)) {
    parts.unshift(rest.slice(-secondary));
  }
  return parts.join(separator);
}

function numberText(cldr, numbers, system, pattern, amount) {
  const symbols = numbers[`symbols-numberSystem-${system}`];
  const digits = [...cldr.supplemental('numberingSystems').numberingSystems[system]._digits];
  const own = (text) => text.replace(/[0-9]/g, (digit) => digits[Number(digit)]);
  const whole = grouped(own(amount.whole), groupSizes(pattern),
    Number(numbers.minimumGroupingDigits), symbols.currencyGroup ?? symbols.group);
  if (!amount.fraction) return whole;
  return whole + (symbols.currencyDecimal ?? symbols.decimal) + own(amount.fraction);
}

function parts(pattern) {
  const [, prefix, number, suffix] = /^([^#0]*)([#0.,]+)([^#0]*)$/.exec(pattern);
  return { prefix, number, suffix };
}

// The pattern of a sign: without one of its own, negative is the positive one after a minus sign.
function signedPattern(pattern, negative) {
  const [positive, explicit] = pattern.split(';');
  return negative ? explicit ?? '-' + positive : positive;
}

// Whether the symbol's character beside the number is a letter.
function isAlphaNextToNumber(pattern, symbol) {
  const { prefix, suffix } = parts(pattern.split(';')[0]);
  if (prefix.endsWith('¤')) return /\p{L}$/u.test(symbol);
  return suffix.startsWith('¤') && /^\p{L}/u.test(symbol);
}

// "Currency spacing": between a symbol's letter and a digit. The sets are those of every locale:
// the symbol's character is neither a symbol nor a blank, its neighbour is a digit.
function spaced(affix, symbol, between, isPrefix) {
  const touches = isPrefix ? affix.endsWith('¤') : affix.startsWith('¤');
  const edge = isPrefix ? [...symbol].at(-1) : [...symbol][0];
  if (!touches || /[\p{S}\p{Z}]/u.test(edge)) return '';
  return between.insertBetween;
}

function patternKey(formats, symbol) {
  const alpha = 'standard-alphaNextToNumber';
  return alpha in formats && isAlphaNextToNumber(formats.standard, symbol) ? alpha : 'standard';
}

// What the data says about the locale and the currency that its identifier names or its region has.
function conventions(cldr, identifier) {
  const { tag, keywords } = parseLocale(identifier);
  const currency = keywords.currency ?? currencyOfRegion(cldr, cldr.region(tag));
  const { name, data: { numbers } } = cldr.main('cldr-numbers-full', 'numbers', tag);
  const { currencies } = cldr.main('cldr-numbers-full', 'currencies', tag).data.numbers;
  const symbol = currencies[currency]?.symbol ?? currency;
  const system = keywords.numbers ?? numbers.defaultNumberingSystem;
  return { name, numbers, system, currency, symbol };
}

// The affixes of a pattern, filled in, with what stands between them and the number.
function affixes({ prefix, suffix }, { numbers, system, symbol }) {
  const { beforeCurrency, afterCurrency } =
    numbers[`currencyFormats-numberSystem-${system}`].currencySpacing;
  const { minusSign } = numbers[`symbols-numberSystem-${system}`];
  const filled = (affix) => affix.replace('-', minusSign).replace('¤', symbol);
  return {
    before: filled(prefix) + spaced(prefix, symbol, afterCurrency, true),
    after: spaced(suffix, symbol, beforeCurrency, false) + filled(suffix),
  };
}

export function priceText(cldr, identifier, price) {
  const found = conventions(cldr, identifier);
  const section = `currencyFormats-numberSystem-${found.system}`;
  const key = patternKey(found.numbers[section], found.symbol);
  const pattern = parts(signedPattern(found.numbers[section][key], price.startsWith('-')));
  const { before, after } = affixes(pattern, found);
  const amount = rounded(price.replace('-', ''), fractionDigits(cldr, found.currency));
  const number = numberText(cldr, found.numbers, found.system, pattern.number, amount);
  return {
    text: before + number + after,
    source: `numbers.json main/${found.name}/numbers/${section}/${key}`,
  };
}
