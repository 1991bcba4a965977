// Puts the page together: program, worker, page, styles and licences in one file.
//   node build.js FOLDER    takes TESSEL.js and TESSEL.wasm from FOLDER/program, writes
//                           FOLDER/tessel.html

import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";
import { build } from "esbuild";
import { collectLicences } from "./licences.js";

const here = dirname(fileURLToPath(import.meta.url));
const folder = process.argv[2] ?? join(here, "../build-web");

const common = { bundle: true, minify: true, write: false, target: "es2022" };

/** Modules that are made here instead of read: a name and a text each. */
function virtualModules(texts) {
  return {
    name: "virtual",
    setup(builder) {
      builder.onResolve({ filter: /^virtual:/ }, ({ path }) => ({ path, namespace: "virtual" }));
      builder.onLoad({ filter: /.*/, namespace: "virtual" }, ({ path }) => ({
        contents: texts[path],
        loader: "text",
      }));
    },
  };
}

async function bundleWorker() {
  const { outputFiles } = await build({
    ...common,
    entryPoints: [join(here, "src/worker.js")],
    alias: { "tessel-program": join(folder, "program/TESSEL.js") },
    format: "iife",
    // Where the glue code would look for the program, which it is handed instead.
    define: { "import.meta.url": '"tessel:"' },
  });
  return outputFiles[0].text;
}

/** What the program tells of its commands. It is made for a worker, and gets to see one. */
async function describeProgram(wasm) {
  const module = join(folder, "program/TESSEL.mjs");
  await build({
    ...common,
    write: true,
    outfile: module,
    format: "esm",
    entryPoints: [join(folder, "program/TESSEL.js")],
    define: { "import.meta.url": '"tessel:"' },
  });
  globalThis.importScripts = () => {};
  globalThis.self = { location: { href: "" } };
  const { default: createTessel } = await import(pathToFileURL(module));
  const lines = [];
  const program = await createTessel({
    locateFile: (name) => name,
    wasmBinary: wasm,
    print: (line) => lines.push(line),
  });
  if (program.callMain(["describe"]) !== 0) throw new Error("the program does not run");
  return lines.join("\n");
}

async function bundlePage(texts) {
  const result = await build({
    ...common,
    entryPoints: [join(here, "src/main.js")],
    format: "esm",
    loader: { ".csv": "text", ".nwk": "text" },
    plugins: [virtualModules(texts)],
    metafile: true,
  });
  return { script: result.outputFiles[0].text, inputs: Object.keys(result.metafile.inputs) };
}

async function main() {
  const wasm = readFileSync(join(folder, "program/TESSEL.wasm"));
  const styles = await build({ ...common, entryPoints: [join(here, "src/style.css")] });
  const { script, inputs } = await bundlePage({
    "virtual:program": gzipSync(wasm, { level: 9 }).toString("base64"),
    "virtual:description": await describeProgram(wasm),
    "virtual:worker": await bundleWorker(),
  });
  const hash = createHash("sha256").update(script).digest("base64");
  const parts = {
    "<!-- STYLES -->": `<style>${styles.outputFiles[0].text}</style>`,
    "<!-- SCRIPT -->": `<script type="module">${script}</script>`,
    "<!-- LICENCES -->": collectLicences(inputs, here),
    SCRIPT_HASH: `sha256-${hash}`,
  };
  const template = readFileSync(join(here, "src/index.html"), "utf8");
  const place = new RegExp(Object.keys(parts).join("|"), "g");
  const page = template.replace(place, (name) => parts[name]);
  writeFileSync(join(folder, "tessel.html"), page);
  console.log(`tessel.html: ${(Buffer.byteLength(page) / 1e6).toFixed(2)} MB`);
}

await main();
