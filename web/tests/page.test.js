// The page in a browser: its numbers are those of the native program, whatever way the data come.

import assert from "node:assert/strict";
import { readFileSync, statSync } from "node:fs";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { after, before, test } from "node:test";
import { WRONG_TABLES, GOOD_TABLES } from "./wrong_tables.js";
import {
  PAGE,
  download,
  dropFiles,
  example,
  launch,
  openPage,
  run,
  runNative,
  screenshot,
  sessionFiles,
  setSeed,
  settingsShown,
  withoutTimes,
} from "./support.js";

const EXAMPLES = {
  aravo: {
    button: "Alpine plants",
    tables: {
      traits: "traits.csv",
      communities: "communities.csv",
      environment: "environment.csv",
    },
  },
  mafragh: {
    button: "Mediterranean grassland",
    tables: {
      traits: "traits.csv",
      communities: "communities.csv",
      environment: "environment.csv",
      phylogeny: "phylogeny.nwk",
    },
  },
};

let browser;
before(async () => {
  browser = await launch();
});
after(() => browser.close());

const filesOf = (name) =>
  Object.fromEntries(
    Object.values(EXAMPLES[name].tables).map((file) => [file, example(name, file)]),
  );

const importWords = (tables, session) => [
  "import",
  ...Object.entries(tables).flatMap(([option, file]) => [`--${option}`, file]),
  "--session",
  session,
];

/** The page's files are the native program's to the byte, but for times. */
async function expectAsNative(page, files, commands) {
  const native = runNative(files, commands);
  assert.equal(native.status, 0, native.errors);
  delete native.files["settings.toml"]; // that the console was given
  const mine = await sessionFiles(page);
  assert.deepEqual(Object.keys(mine).sort(), Object.keys(native.files).sort());
  for (const [name, text] of Object.entries(native.files)) {
    assert.equal(withoutTimes(mine[name]), withoutTimes(text), name);
  }
}

test("the page is small, and ready in a moment", async () => {
  assert.ok(statSync(PAGE).size < 2e6);
  const page = await openPage(browser);
  const ready = await page.evaluate(() => performance.getEntriesByName("ready")[0].startTime);
  console.log(`ready after ${Math.round(ready)} ms`);
  assert.ok(ready < 10000, "a second on an idle machine; others may be at work on this one");
  await page.close();
});

for (const [name, { button, tables }] of Object.entries(EXAMPLES)) {
  test(`${name}: three measures, crisp and fuzzy types, to the byte`, async () => {
    const page = await openPage(browser);
    await page.getByRole("button", { name: button }).click();
    await settingsShown(page);
    for (const congruence of ["mantel", "procrustes", "rv"]) {
      for (const belonging of ["fuzzy", "crisp"]) {
        await page.getByLabel("Iterations", { exact: true }).fill("200");
        await page.getByLabel("Congruence", { exact: true }).selectOption(congruence);
        await page.getByLabel("Belonging", { exact: true }).selectOption(belonging);
        await setSeed(page, 7);
        await run(page);
        const words = `analyse ${name} --iterations 200 --seed 7`.split(" ");
        await expectAsNative(page, filesOf(name), [
          importWords(tables, name),
          [...words, "--congruence", congruence, "--belonging", belonging],
        ]);
      }
    }
    assert.deepEqual(page.errors, []);
    await page.close();
  });
}

test("a ranking with its test, to the byte; settings.toml repeats it at the console", async () => {
  const page = await openPage(browser);
  await page.getByRole("button", { name: "Alpine plants" }).click();
  await settingsShown(page);
  await page.getByLabel("Which traits express a pattern best?").check();
  await page.getByLabel("Criterion", { exact: true }).selectOption("XE.T");
  await page.getByLabel("Sizes", { exact: true }).fill("1-3");
  await page.getByLabel("Test", { exact: true }).fill("19");
  await page.getByLabel("Angle", { exact: true }).uncheck();
  await setSeed(page, 3);
  await run(page);
  const settings = (await download(page, "settings.toml")).toString();
  await expectAsNative(page, { ...filesOf("aravo"), "settings.toml": settings }, [
    importWords(EXAMPLES.aravo.tables, "aravo"),
    ["--config", "settings.toml", "rank", "aravo"],
  ]);
  await page.close();
});

const rowsOf = (text) =>
  text
    .trim()
    .split("\n")
    .map((line) => line.split(","));
const textOf = (rows) => `${rows.map((row) => row.join(",")).join("\n")}\n`;

function withRowsReversed(text) {
  const [header, ...rows] = rowsOf(text);
  return textOf([header, ...rows.reverse()]);
}

function withColumnsReversed(text) {
  return textOf(rowsOf(text).map(([name, ...cells]) => [name, ...cells.reverse()]));
}

test("dropped files, under names that tell nothing and with shuffled rows and columns", async () => {
  const page = await openPage(browser);
  const statistics = async () => {
    await setSeed(page, 11);
    await run(page);
    const files = await sessionFiles(page);
    return files[Object.keys(files).find((name) => name.endsWith("statistics.csv"))];
  };
  await dropFiles(page, filesOf("aravo"));
  await settingsShown(page);
  const plain = await statistics();
  await page.reload();
  // The traits give the OTUs' order, the communities theirs.
  await dropFiles(page, {
    "one.csv": withRowsReversed(example("aravo", "environment.csv")),
    "two.csv": withColumnsReversed(example("aravo", "communities.csv")),
    "three.csv": example("aravo", "traits.csv"),
  });
  await settingsShown(page);
  assert.equal(await page.locator("#card-communities .file-name").textContent(), "two.csv");
  assert.equal(await statistics(), plain);
  await page.close();
});

for (const { what, tables, beside } of WRONG_TABLES) {
  test(`wrong: ${what}`, async () => {
    const files = { ...GOOD_TABLES, ...tables };
    const words = importWords(
      {
        traits: "traits.csv",
        communities: "communities.csv",
        environment: "environment.csv",
        phylogeny: "tree.nwk",
      },
      "session",
    );
    const native = runNative(files, [words]);
    assert.notEqual(native.status, 0);
    const page = await openPage(browser);
    await dropFiles(page, files);
    const alert = page.locator(beside ? `#card-${beside} .alert` : "#data-view .alert");
    await alert.waitFor();
    assert.equal(await alert.textContent(), native.errors.replace(/^TESSEL: /gm, "").trim());
    assert.ok(await page.locator("#settings").isHidden());
    for (const [, option] of native.errors.matchAll(/--(drop-[a-z]+)/g)) {
      assert.ok(await page.locator(`#import-${option}`).isVisible());
    }
    await page.close();
  });
}

test("cancel in the middle, and run again", async () => {
  const page = await openPage(browser);
  await page.getByRole("button", { name: "Alpine plants" }).click();
  await settingsShown(page);
  await page.getByLabel("Iterations", { exact: true }).fill("2000000");
  await page.getByRole("button", { name: "Run", exact: true }).click();
  await page.waitForFunction(() => document.querySelector("progress")?.value > 0);
  await screenshot(page, "progress");
  await page.getByRole("button", { name: "Cancel" }).click();
  await page.getByText("Cancelled.").waitFor();
  await page.getByLabel("Iterations", { exact: true }).fill("99");
  await run(page);
  assert.equal(await page.locator(".statistics tbody tr").count(), 11);
  const stale = page.getByText("results of the former settings");
  assert.ok(await stale.isHidden());
  await page.getByLabel("Iterations", { exact: true }).fill("199");
  assert.ok(await stale.isVisible());
  await run(page);
  assert.ok(await stale.isHidden());
  await page.close();
});

/** Tables of so many OTUs and communities; a small generator of numbers gives their cells. */
function madeTables(otus, communities, traits) {
  let state = 12345;
  const next = () => (state = (state * 1103515245 + 12345) % 2147483648) / 2147483648;
  const table = (corner, rows, columns, cell) =>
    [[corner, ...columns], ...rows.map((row) => [row, ...columns.map(cell)])].join("\n");
  const names = (letter, n) => Array.from({ length: n }, (_, k) => `${letter}${k}`);
  return {
    "traits.csv": table("otu", names("o", otus), names("t", traits), () => next().toFixed(3)),
    "communities.csv": table("site", names("s", communities), names("o", otus), () =>
      next() < 0.3 ? Math.ceil(9 * next()) : 0,
    ),
    "environment.csv": table("site", names("s", communities), names("e", 3), () =>
      next().toFixed(3),
    ),
  };
}

test("300 OTUs in 200 communities, to the byte", async () => {
  const page = await openPage(browser);
  const files = madeTables(300, 200, 6);
  await dropFiles(page, files);
  await settingsShown(page);
  await page.getByLabel("Iterations", { exact: true }).fill("50");
  await setSeed(page, 5);
  const start = Date.now();
  await run(page);
  console.log(`300 x 200, 50 arrangements: ${Date.now() - start} ms`);
  await expectAsNative(page, files, [
    importWords(EXAMPLES.aravo.tables, "session"),
    "analyse session --iterations 50 --seed 5".split(" "),
  ]);
  await page.close();
});

test("memory that runs out is told", async () => {
  const page = await openPage(browser);
  await dropFiles(page, madeTables(11000, 4, 2));
  await settingsShown(page);
  await page.getByRole("button", { name: "Run", exact: true }).click();
  const alert = page.locator("#settings-view .alert");
  await alert.waitFor({ timeout: 240000 });
  assert.match(await alert.textContent(), /memory/);
  await page.close();
});

test("from a server, no request but the page's own, and none can be made", async () => {
  const server = createServer((_, response) => {
    response.writeHead(200, { "content-type": "text/html" });
    response.end(readFileSync(PAGE));
  });
  await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
  const address = `http://127.0.0.1:${server.address().port}/`;
  const context = await browser.newContext();
  const requests = [];
  context.on("request", (request) => requests.push(request.url()));
  const page = await context.newPage();
  await page.goto(address);
  await page.waitForSelector('html[data-ready="program"]');
  await page.getByRole("button", { name: "Mediterranean grassland" }).click();
  await settingsShown(page);
  await run(page);
  await page.locator("#figure-ordination svg").hover();
  const outside = requests.filter((url) => !/^(blob|data):/.test(url));
  assert.deepEqual(outside, [address]);
  assert.equal(
    await page.evaluate(
      (url) =>
        fetch(url).then(
          () => "made",
          () => "refused",
        ),
      address,
    ),
    "refused",
  );
  await context.close();
  server.close();
});

test("saved pictures stand for themselves; points tell their names", async () => {
  const page = await openPage(browser);
  await page.getByRole("button", { name: "Alpine plants" }).click();
  await settingsShown(page);
  await run(page);
  const svg = (await download(page, "Save the picture ordination.svg")).toString();
  assert.match(svg, /^<svg [^>]*xmlns="http:\/\/www\.w3\.org\/2000\/svg"/);
  assert.ok(!svg.includes("var(--"));
  const dot = page.locator("#figure-ordination svg [aria-label=dot] circle").first();
  await dot.scrollIntoViewIfNeeded();
  const { x, y } = await dot.boundingBox();
  await page.mouse.move(x + 4, y + 4);
  await page.locator("#figure-ordination svg [aria-label=tip] text").waitFor();
  assert.match(
    await page.locator("#figure-ordination svg [aria-label=tip]").textContent(),
    /AR\d\d/,
  );
  await page.close();
});

test("accessible by axe, and every view looked at: wide and narrow, light and dark", async () => {
  const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core"), "utf8");
  for (const width of [1280, 390]) {
    for (const colorScheme of ["light", "dark"]) {
      const page = await openPage(browser, undefined, {
        viewport: { width, height: 900 },
        colorScheme,
      });
      const look = async (view) => {
        await page.evaluate(() =>
          document.querySelectorAll("main details").forEach((d) => (d.open = true)),
        );
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => globalThis.axe.run());
        const serious = violations.filter(({ impact }) => /serious|critical/.test(impact));
        const told = serious.map(({ id, nodes }) => `${id}: ${nodes[0].html}`);
        assert.deepEqual(told, [], `${view} ${width} ${colorScheme}`);
        const wider = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
        assert.ok(wider <= 0, `${view} is ${wider} wider than ${width}`);
        await page.evaluate(() =>
          document.querySelectorAll("main details").forEach((d) => (d.open = false)),
        );
        await screenshot(page, `${view}-${width}-${colorScheme}`);
      };
      await look("start");
      await page.getByRole("button", { name: "Mediterranean grassland" }).click();
      await settingsShown(page);
      await look("data");
      await run(page);
      await look("analysis");
      await page.getByLabel("Which traits express a pattern best?").check();
      await page.getByLabel("Criterion", { exact: true }).selectOption("TE");
      await page.getByLabel("Sizes", { exact: true }).fill("1-3");
      await page.getByLabel("Test", { exact: true }).fill("9");
      await run(page);
      await look("ranking");
      await page.close();
    }
  }
});
