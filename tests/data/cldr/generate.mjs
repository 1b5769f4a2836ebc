// Writes prices.tsv and periods.tsv: what CLDR 42 and the rules of UTS 35 (parts 1 and 3) say about
// prices and periods. It uses the JSON data alone, no library that formats anything.
//
//     npm install --prefix DIR --no-save \
//         cldr-core@42.0.0 cldr-numbers-full@42.0.0 cldr-units-modern@42.0.0
//     node tests/data/cldr/generate.mjs DIR/node_modules
//
// Columns of prices.tsv: locale, price, text, pattern's place in the data.
// Columns of periods.tsv: locale, count, unit, text, pattern's place in the data.
// Invisible characters of a text stand there as \uXXXX, a backslash as two.

import { writeFileSync } from 'node:fs';
import { Cldr } from './cldr.mjs';
import { periodText } from './periods.mjs';
import { priceText } from './prices.mjs';

const prices = ['0', '0.01', '0.99', '1234.5', '1234567.89', '-0.99'];
const priceLocales = `
  en_US en_GB en_CA en_AU en_IN en_ZA en_CH en_SG en_IE
  de_DE de_AT de_CH de_LI fr_FR fr_CA fr_CH it_IT it_CH nl_NL nl_BE
  es_ES es_MX es_AR es_CL es_CO es_US es_419 pt_BR pt_PT ca_ES
  pl_PL cs_CZ sk_SK sl_SI hr_HR hu_HU ro_RO bg_BG sr_RS sr_Latn_RS ru_RU uk_UA lv_LV lt_LT et_EE
  da_DK nb_NO sv_SE fi_FI is_IS el_GR tr_TR
  ja_JP ko_KR zh_CN zh_TW zh_HK zh_Hant_HK th_TH vi_VN id_ID ms_MY
  ar_EG ar_SA ar_AE ar_KW ar_BH ar_JO ar_TN ar_IQ he_IL fa_IR fa_AF ur_PK ur_IN ps_AF
  hi_IN bn_BD bn_IN mr_IN ne_NP ta_IN my_MM
  ar_EG@numbers=latn hi_IN@numbers=deva
  en_US@currency=BRL en_US@currency=EUR en_US@currency=JPY en_US@currency=KWD en_US@currency=CHF
  en_US@currency=AUD en_CA@currency=USD en_AU@currency=USD en_IN@currency=EUR
  de_CH@currency=EUR de_DE@currency=USD de_DE@currency=CHF de_AT@currency=CHF
  fr_CA@currency=USD fr_FR@currency=TND pt_PT@currency=BRL es_MX@currency=USD
  ja_JP@currency=USD ja_JP@currency=CNY zh_CN@currency=JPY zh_CN@currency=USD ko_KR@currency=USD
  ar_EG@currency=USD he_IL@currency=USD fa_IR@currency=USD bn_BD@currency=USD hi_IN@currency=JPY
  bn_BD@currency=CHF pl_PL@currency=EUR`;

const counts = [1, 2, 5, 11];
const units = ['day', 'week', 'month', 'year'];
const periodLocales = `
  en_US en_GB de_DE de_CH fr_FR fr_CA es_ES es_MX it_IT pt_BR pt_PT nl_NL sv_SE nb_NO da_DK fi_FI
  pl_PL ru_RU uk_UA cs_CZ sk_SK sl_SI hr_HR sr_RS sr_Latn_RS bg_BG ro_RO hu_HU el_GR tr_TR
  lt_LT lv_LV et_EE ga_IE cy_GB gd_GB is_IS
  ar_EG ar_SA ar_AE he_IL fa_IR ur_PK hi_IN bn_BD mr_IN ne_NP ta_IN my_MM
  ja_JP ko_KR zh_CN zh_TW zh_HK th_TH vi_VN id_ID`;

const invisible = /[\p{C}\p{Zl}\p{Zp}]|(?! )\p{Zs}/gu;

function escaped(text) {
  const hex = (c) => '\\u' + c.codePointAt(0).toString(16).padStart(4, '0');
  return text.replaceAll('\\', '\\\\').replace(invisible, hex);
}

function line(...columns) {
  return columns.join('\t') + '\n';
}

function priceRow(cldr, locale, price) {
  const { text, source } = priceText(cldr, locale, price);
  return line(locale, price, escaped(text), source);
}

function periodRow(cldr, locale, count, unit) {
  const { text, source } = periodText(cldr, locale, count, unit);
  return line(locale, count, unit, escaped(text), source);
}

function write(name, rows) {
  writeFileSync(new URL(name, import.meta.url), rows.join(''));
}

const words = (text) => text.trim().split(/\s+/);
const cldr = new Cldr(process.argv[2]);

write('prices.tsv', words(priceLocales).flatMap(
  (locale) => prices.map((price) => priceRow(cldr, locale, price))));
write('periods.tsv', words(periodLocales).flatMap(
  (locale) => units.flatMap((unit) => counts.map((n) => periodRow(cldr, locale, n, unit)))));
