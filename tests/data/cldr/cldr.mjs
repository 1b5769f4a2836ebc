// The JSON files of CLDR and where a locale finds its data in them (UTS 35 part 1, "Locale
// Inheritance and Matching"). The files of a locale already hold what it inherits.

import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';

// "de_CH@currency=EUR" -> { tag: "de-CH", keywords: { currency: "EUR" } }
export function parseLocale(identifier) {
  const [name, keywords = ''] = identifier.split('@');
  const pairs = keywords.split(';').filter(Boolean).map((pair) => pair.split('='));
  return { tag: name.replaceAll('_', '-'), keywords: Object.fromEntries(pairs) };
}

// "zh-Hant-TW" -> { language: "zh", script: "Hant", region: "TW" }
function subtags(tag) {
  const [language, ...rest] = tag.split('-');
  const script = rest.find((part) => part.length === 4);
  const region = rest.find((part) => part.length < 4);
  return { language, script, region };
}

const joined = (...parts) => parts.filter(Boolean).join('-');

export class Cldr {
  #root;
  #files = new Map();

  constructor(root) {
    this.#root = root;
  }

  #read(path) {
    if (!this.#files.has(path)) {
      this.#files.set(path, JSON.parse(readFileSync(join(this.#root, path), 'utf8')));
    }
    return this.#files.get(path);
  }

  supplemental(name) {
    return this.#read(`cldr-core/supplemental/${name}.json`).supplemental;
  }

  region(tag) {
    return subtags(tag).region;
  }

  // The tag with the script that it is most likely written in: "zh-TW" -> "zh-Hant-TW".
  #withScript(tag) {
    const { language, script, region } = subtags(tag);
    if (script) return tag;
    const likely = this.supplemental('likelySubtags').likelySubtags;
    const full = likely[joined(language, region)] ?? likely[language];
    return joined(language, subtags(full).script, region);
  }

  #parent(tag) {
    const exceptions = this.supplemental('parentLocales').parentLocales.parentLocale;
    return exceptions[tag] ?? (tag.includes('-') ? tag.slice(0, tag.lastIndexOf('-')) : 'und');
  }

  #andParents(tag) {
    return tag === 'und' ? [tag] : [tag, ...this.#andParents(this.#parent(tag))];
  }

  // Where to look for a locale's data, best first. A script that is not the language's usual one
  // must not be lost on the way; the usual one stands in no file name.
  candidates(tag) {
    return [tag, ...this.#andParents(this.#withScript(tag))];
  }

  // The locale whose file has the data, and the file's part for it.
  main(packageName, file, tag) {
    const path = (name) => `${packageName}/main/${name}/${file}.json`;
    const found = this.candidates(tag).find((name) => existsSync(join(this.#root, path(name))));
    return { name: found, data: this.#read(path(found)).main[found] };
  }
}
