// The licences of all that the page carries, as its own text shows them.

import { existsSync, readFileSync, readdirSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

const escapeHtml = (text) =>
  text.replaceAll("&", "&amp;").replaceAll("<", "&lt;").replaceAll(">", "&gt;");

const OWN = fileURLToPath(new URL("../LICENSE", import.meta.url));

/** TESSEL and the libraries that are compiled into it. */
const COMPILED = [
  { name: "TESSEL, GNU Scientific Library", licence: "GPL-3.0-or-later", file: OWN },
  { name: "libcsv", licence: "LGPL-2.1-or-later" },
  { name: "CLI11", licence: "BSD-3-Clause", file: "/usr/share/doc/libcli11-dev/copyright" },
  {
    name: "Emscripten, musl, libc++, compiler-rt",
    licence: "MIT and University of Illinois/NCSA, Apache-2.0 with LLVM exceptions",
  },
];

function entry(name, licence, text) {
  const told = `<h3>${escapeHtml(name)}</h3><p>${escapeHtml(licence)}</p>`;
  return text === "" ? told : `${told}<pre>${escapeHtml(text)}</pre>`;
}

function textOfPackage(folder) {
  const file = readdirSync(folder).find((name) => /^licen[cs]e/i.test(name));
  return file === undefined ? "" : readFileSync(join(folder, file), "utf8").trim();
}

/** The packages that the bundler's inputs came from. */
function packagesOf(inputs) {
  const names = inputs.map((path) => /node_modules\/((?:@[^/]+\/)?[^/]+)\//.exec(path)?.[1]);
  return [...new Set(names.filter(Boolean))].sort();
}

/** HTML of all licences, those of npm packages in full. */
export function collectLicences(inputs, web) {
  const packages = packagesOf(inputs).map((name) => {
    const folder = join(web, "node_modules", name);
    const { version, license } = JSON.parse(readFileSync(join(folder, "package.json"), "utf8"));
    return { title: `${name} ${version}`, license, text: textOfPackage(folder) };
  });
  // Packages of one hand share a text; it is shown once, under all of their names.
  const byText = new Map();
  for (const one of packages) byText.set(one.text, [...(byText.get(one.text) ?? []), one]);
  const shown = [...byText.values()].map((group) =>
    entry(group.map(({ title }) => title).join(", "), group[0].license, group[0].text),
  );
  const compiled = COMPILED.map(({ name, licence, file }) => {
    const isThere = file !== undefined && existsSync(file);
    return entry(name, licence, isThere ? readFileSync(file, "utf8").trim() : "");
  });
  return [...compiled, ...shown].join("\n");
}
