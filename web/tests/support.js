// What the tests share: the browser, the page with a user's hands on it, the native program.

import { spawnSync } from "node:child_process";
import { mkdtempSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, relative } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { unzipSync } from "fflate";
import { chromium } from "playwright-core";

const root = fileURLToPath(new URL("../..", import.meta.url));
export const PAGE = join(root, "build-web/tessel.html");
export const PAGE_URL = pathToFileURL(PAGE).href;
const NATIVE = process.env.TESSEL ?? join(root, "build/TESSEL");
const SCREENSHOTS = join(root, "build-web/screenshots");

export const example = (name, file) => readFileSync(join(root, "examples", name, file), "utf8");

/** A browser; Debian's, which cannot make its sandbox where the tests run as root. */
export const launch = () =>
  chromium.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    args: ["--no-sandbox"],
  });

/** The page, opened and ready; errors of its scripts fail the test that looks at `page.errors`. */
export async function openPage(browser, url = PAGE_URL, options = {}) {
  const page = await browser.newPage({ viewport: { width: 1280, height: 900 }, ...options });
  page.errors = [];
  page.on("pageerror", (error) => page.errors.push(error.message));
  await page.goto(url);
  await page.waitForSelector('html[data-ready="program"]');
  return page;
}

/** Drops files, a Map or an object of texts by their names, on the page. */
export async function dropFiles(page, files) {
  const transfer = await page.evaluateHandle((entries) => {
    const data = new DataTransfer();
    for (const [name, text] of entries) data.items.add(new File([text], name));
    return data;
  }, Object.entries(files));
  await page.dispatchEvent("#data-view .drop", "drop", { dataTransfer: transfer });
}

export const settingsShown = (page) =>
  page.waitForSelector("#settings:not([hidden])", { timeout: 120000 });

export async function setSeed(page, seed) {
  const more = page.locator("#settings-view details");
  if (!(await more.evaluate((element) => element.open))) await more.locator("summary").click();
  await page.locator("#settings-view select[id$=-seed]").selectOption("NUMBER");
  await page.getByLabel("Seed: number").fill(String(seed));
}

/** Runs with the settings as they stand, to the results. */
export async function run(page) {
  await page.evaluate(() => document.querySelector("#results-view").replaceChildren());
  await page.getByRole("button", { name: "Run", exact: true }).click();
  await page.waitForSelector("#downloads", { timeout: 120000 });
}

/** What a button of the page saves. */
export async function download(page, button) {
  const [saved] = await Promise.all([
    page.waitForEvent("download"),
    page.getByRole("button", { name: button, exact: true }).click(),
  ]);
  return readFileSync(await saved.path());
}

const decoder = new TextDecoder();

/** All files of the session as the page gives them, texts by name. */
export async function sessionFiles(page) {
  const zip = unzipSync(new Uint8Array(await download(page, "Session with all files (zip)")));
  return Object.fromEntries(
    Object.entries(zip).map(([name, bytes]) => [name, decoder.decode(bytes)]),
  );
}

function filesBelow(folder, from = folder) {
  return readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const path = join(folder, entry.name);
    if (entry.isDirectory()) return filesBelow(path, from);
    return [[relative(from, path), readFileSync(path, "utf8")]];
  });
}

/** The native program's commands on files; what the last one said, and all files. */
export function runNative(files, commands) {
  const folder = mkdtempSync(join(tmpdir(), "tessel-web-"));
  try {
    for (const [name, text] of Object.entries(files)) writeFileSync(join(folder, name), text);
    let last = null;
    for (const command of commands) last = spawnSync(NATIVE, command, { cwd: folder });
    return {
      status: last.status,
      errors: last.stderr.toString(),
      files: Object.fromEntries(filesBelow(folder)),
    };
  } finally {
    rmSync(folder, { recursive: true });
  }
}

/** Without the lines that tell when and how long. */
export function withoutTimes(text) {
  const isTime = (line) =>
    line.startsWith("Elapsed time") || /^\w{3} \w{3} [ \d]\d \d\d:/.test(line);
  return text
    .split("\n")
    .filter((line) => !isTime(line))
    .join("\n");
}

export async function screenshot(page, name) {
  mkdirSync(SCREENSHOTS, { recursive: true });
  await page.waitForTimeout(300); // for pictures that follow the width of their place
  await page.screenshot({ path: join(SCREENSHOTS, `${name}.png`), fullPage: true });
}
