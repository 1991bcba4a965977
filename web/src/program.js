// Runs of the program: commands in, what it said and its files out.

import { gunzipSync } from "fflate";
import description from "virtual:description";
import packedProgram from "virtual:program";
import workerText from "virtual:worker";

function bytesOfBase64(text) {
  return Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
}

let compiled = null;

/** The program, unpacked and compiled once. */
function compileProgram() {
  compiled ??= WebAssembly.compile(gunzipSync(bytesOfBase64(packedProgram)));
  return compiled;
}

/** What the program said without the words that precede it at a console. */
function withoutPrefix(line) {
  return line.replace(/^TESSEL: /, "");
}

function outcomeOf(results) {
  const last = results.at(-1);
  const messages = results.flatMap((result) => result.messages.map(withoutPrefix));
  const isWarning = (line) => line.startsWith("warning: ");
  return {
    status: last.status,
    screen: results.map((result) => result.screen),
    warnings: messages.filter(isWarning).map((line) => line.replace(/^warning: /, "")),
    failure: messages.filter((line) => !isWarning(line)).join("\n"),
    files: last.files,
  };
}

/**
 * Runs commands one after the other, up to the first that fails, on `files` (a Map from names to
 * bytes). `outcome` resolves to status, screen (lines of each command), warnings, failure, files;
 * `cancel` ends the run, after which `outcome` stays open.
 */
export function startRun(commands, files, onProgress = () => {}) {
  const url = URL.createObjectURL(new Blob([workerText], { type: "text/javascript" }));
  const worker = new Worker(url);
  const outcome = new Promise((resolve, reject) => {
    worker.onerror = (event) => reject(new Error(event.message));
    worker.onmessage = ({ data }) => {
      if (data.progress) {
        onProgress(data.progress);
        return;
      }
      worker.terminate();
      if (data.results) resolve(outcomeOf(data.results));
      else reject(new Error(data.failure));
    };
    compileProgram().then((wasm) => worker.postMessage({ wasm, commands, files }), reject);
  }).finally(() => URL.revokeObjectURL(url));
  return { outcome, cancel: () => worker.terminate() };
}

/** All commands with their options, as the program itself told them when the page was built. */
export const DESCRIPTION = JSON.parse(description);

/** Has the program ready before it is asked for. */
export function prepareProgram() {
  return compileProgram();
}
